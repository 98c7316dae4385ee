#pragma once

#include "Platform/Bytes.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// A body larger than this is not taken, in bytes; nor is a query.
inline constexpr std::size_t kMostFormBytes = std::size_t{1024} * 1024;

/// One entry of a form's data. A file is known by its name, its content is not.
struct WebFormField {
    QString name;
    QString value;
    /// Only for files: the media type.
    std::optional<QString> fileType = std::nullopt;
};

enum class WebFormEncoding { urlencoded, multipart, plain };

/// A form at the moment in which it is sent, and what a browser would send of it. Source: HTML Standard, form
/// submission. Any thread.
struct WebForm {
    enum class Method { get, post };

    /// Where the form is sent, as an absolute URL; a GET form's query is not in it yet.
    QString action;
    Method method = Method::get;
    /// Counts for POST; a GET form is always urlencoded.
    WebFormEncoding encoding = WebFormEncoding::urlencoded;
    /// A name of the Encoding Standard. One that is unknown counts as UTF-8.
    std::string charset = "utf-8";
    /// No value if the form had more data than is taken.
    std::optional<std::vector<WebFormField>> fields;

    /// What `forms.js` gives out; no value unless it is a form that is sent by GET or POST.
    [[nodiscard]] static std::optional<WebForm> make(const QString& json);

    /// The address that the browser goes to: a GET form's data stand in its query. No value for a GET form
    /// with more data than is taken.
    [[nodiscard]] std::optional<QString> address() const;

    /// A POST form's body; empty for a form without data. No value if there is more than is taken.
    [[nodiscard]] std::optional<Bytes> body() const;
};

} // namespace korvane
