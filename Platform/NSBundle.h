#pragma once

#include "Platform/Bytes.h"
#include "Platform/Export.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// A bundle: a named place that holds files, such as the application's own. Any thread.
class KORVANE_EXPORT NSBundle {
public:
    virtual ~NSBundle() = default;

    /// The bundle of a folder's files. The folder need not exist; then the bundle is empty.
    [[nodiscard]] static std::shared_ptr<NSBundle> bundleWithPath(const std::string& folder);

    /// The absolute URL of the receipt that the store gave with the application, or no value.
    [[nodiscard]] virtual std::optional<std::string> appStoreReceiptURL() const = 0;

    /// The path of the file `name.extension` (`name` alone where the extension is empty), or no value where
    /// the bundle has no such file.
    [[nodiscard]] virtual std::optional<std::string> URLForResource(const std::string& name,
                                                                    const std::string& extension) const = 0;

    /// The folder that the bundle is.
    [[nodiscard]] virtual std::string bundlePath() const = 0;

    /// The folder of the frameworks that come with the bundle's application; it need not exist.
    [[nodiscard]] virtual std::string privateFrameworksPath() const { return bundlePath() + "/Frameworks"; }

    /// A list of texts among the bundle's own settings, such as "UISupportedInterfaceOrientations"; no value
    /// where it does not say.
    [[nodiscard]] virtual std::optional<std::vector<std::string>>
    stringsForInfoDictionaryKey(const std::string& /*key*/) const {
        return std::nullopt;
    }
};

/// A bundle that is a folder and came from no store.
class KORVANE_EXPORT FolderBundle : public NSBundle {
public:
    explicit FolderBundle(std::string folder) : folder_(std::move(folder)) {}

    [[nodiscard]] std::optional<std::string> appStoreReceiptURL() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> URLForResource(const std::string& name,
                                                            const std::string& extension) const override;
    [[nodiscard]] std::string bundlePath() const override { return folder_; }

private:
    std::string folder_;
};

/// The bytes of a bundle's file, of at most 16 MiB.
/// @throws CFError with the system's number and text for a file that cannot be read.
KORVANE_EXPORT [[nodiscard]] Bytes contentsOfFile(const std::string& path);

} // namespace korvane
