#include "Platform/Qt/Web/WebForm.h"

#include "Platform/Unicode.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <string_view>

namespace korvane {

namespace {

std::string encoded(const QString& text, const std::string& charset) {
    return charset == "utf-8" ? text.toStdString() : unicode::inCharset(text.toStdU16String(), charset);
}

/// Every line break as CR LF.
QString withNetworkLines(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
}

/// Source: URL Standard, application/x-www-form-urlencoded percent-encode set.
void appendUrlencoded(std::string& to, std::string_view bytes) {
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789*-._";
    constexpr std::string_view kHex = "0123456789ABCDEF";
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (kPlain.find(byte) != std::string_view::npos) {
            to += byte;
        } else if (byte == ' ') {
            to += '+';
        } else {
            to += '%';
            to += kHex[value >> 4U];
            to += kHex[value & 15U];
        }
    }
}

std::string urlencoded(const std::vector<WebFormField>& fields, const std::string& charset) {
    std::string text;
    for (const WebFormField& field : fields) {
        if (!text.empty()) text += '&';
        appendUrlencoded(text, encoded(withNetworkLines(field.name), charset));
        text += '=';
        appendUrlencoded(text, encoded(withNetworkLines(field.value), charset));
    }
    return text;
}

/// Source: HTML Standard, text/plain encoding algorithm.
std::string plain(const std::vector<WebFormField>& fields, const std::string& charset) {
    std::string text;
    for (const WebFormField& field : fields) {
        text += encoded(withNetworkLines(field.name), charset);
        text += '=';
        text += encoded(withNetworkLines(field.value), charset);
        text += "\r\n";
    }
    return text;
}

/// A name in the quotes of a part's header. Source: HTML Standard, multipart/form-data encoding algorithm.
std::string quoted(const QString& name, const std::string& charset) {
    std::string text = "\"";
    for (const char byte : encoded(name, charset)) {
        if (byte == '"') {
            text += "%22";
        } else if (byte == '\r') {
            text += "%0D";
        } else if (byte == '\n') {
            text += "%0A";
        } else {
            text += byte;
        }
    }
    return text += '"';
}

/// Source: RFC 7578.
std::string multipart(const std::vector<WebFormField>& fields, const std::string& charset) {
    const std::string boundary =
        "--KorvaneFormBoundary" + QUuid::createUuid().toString(QUuid::Id128).toStdString();
    std::string text;
    for (const WebFormField& field : fields) {
        text += "--";
        text += boundary;
        text += "\r\nContent-Disposition: form-data; name=";
        text += quoted(withNetworkLines(field.name), charset);
        if (field.fileType) {
            text += "; filename=";
            text += quoted(field.value, charset);
            text += "\r\nContent-Type: ";
            text += field.fileType->isEmpty() ? "application/octet-stream" : field.fileType->toStdString();
        }
        text += "\r\n\r\n";
        if (!field.fileType) text += encoded(withNetworkLines(field.value), charset);
        text += "\r\n";
    }
    text += "--";
    text += boundary;
    return text += "--\r\n";
}

std::vector<WebFormField> fieldsFrom(const QJsonArray& told) {
    std::vector<WebFormField> fields;
    fields.reserve(static_cast<std::size_t>(told.size()));
    for (const auto& value : told) {
        const QJsonValue type = value[QLatin1String("type")];
        fields.push_back({value[QLatin1String("name")].toString(), value[QLatin1String("value")].toString(),
                          type.isString() ? std::optional(type.toString()) : std::nullopt});
    }
    return fields;
}

WebFormEncoding encodingFrom(const QString& mediaType) {
    if (mediaType == QLatin1String("multipart/form-data")) return WebFormEncoding::multipart;
    return mediaType == QLatin1String("text/plain") ? WebFormEncoding::plain : WebFormEncoding::urlencoded;
}

} // namespace

std::optional<WebForm> WebForm::make(const QString& json) {
    const QJsonObject told = QJsonDocument::fromJson(json.toUtf8()).object();
    const QString method = told[QLatin1String("method")].toString();
    const bool isPost = method == QLatin1String("post");
    if (!isPost && method != QLatin1String("get")) return std::nullopt;
    WebForm form;
    form.action = told[QLatin1String("action")].toString();
    form.method = isPost ? Method::post : Method::get;
    form.encoding = encodingFrom(told[QLatin1String("enctype")].toString());
    form.charset = told[QLatin1String("accept-charset")].toString().toStdString();
    const QJsonValue fields = told[QLatin1String("fields")];
    if (fields.isArray()) form.fields = fieldsFrom(fields.toArray());
    return form;
}

std::optional<QString> WebForm::address() const {
    if (method == Method::post) return action;
    if (!fields) return std::nullopt;
    const std::string query = urlencoded(*fields, charset);
    if (query.size() > kMostFormBytes) return std::nullopt;
    const qsizetype mark = action.indexOf(QLatin1Char('#'));
    const QString fragment = mark < 0 ? QString() : action.mid(mark);
    const QString place = action.left(mark).section(QLatin1Char('?'), 0, 0);
    return place + QLatin1Char('?') + QString::fromStdString(query) + fragment;
}

std::optional<Bytes> WebForm::body() const {
    if (!fields) return std::nullopt;
    std::string text;
    switch (encoding) {
    case WebFormEncoding::urlencoded: text = urlencoded(*fields, charset); break;
    case WebFormEncoding::multipart: text = multipart(*fields, charset); break;
    case WebFormEncoding::plain: text = plain(*fields, charset); break;
    }
    if (text.size() > kMostFormBytes) return std::nullopt;
    return toBytes(text);
}

} // namespace korvane
