#pragma once

#include "Platform/View/UIImage.h"

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QThreadPool>

#include <chrono>
#include <map>
#include <memory>

namespace korvane {

/// Decodes a picture by the format that its head tells, and by no other.
/// @param pixels  the extent of what comes back; that of the picture, if that is smaller and no drawing.
/// @return premultiplied colours; null for bytes that do not decode. Any thread.
[[nodiscard]] QImage decoded(const EncodedImage& picture, QSize pixels);

/// Decodes the network's pictures beside the main queue, each once for as long as someone has it. One that
/// does not decode, or not in time, is none. Main queue only.
class PictureLoader final : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kUsualTime{3000};

    explicit PictureLoader(std::chrono::milliseconds time = kUsualTime);
    /// Waits for what is being decoded: the work is bounded by what `UIImage` lets in.
    ~PictureLoader() override;

    /// The picture in 1024 pixels a side at most; null before `loaded` and for one that is none. The first
    /// question has it decoded.
    [[nodiscard]] QImage picture(const std::shared_ptr<const EncodedImage>& encoded);

signals:
    /// Some picture is there that was not.
    void loaded();

private:
    using Key = std::weak_ptr<const EncodedImage>;

    void load(const std::shared_ptr<const EncodedImage>& encoded);

    std::chrono::milliseconds time_;
    std::map<Key, QImage, std::owner_less<Key>> pictures_;
    QThreadPool pool_;
};

} // namespace korvane
