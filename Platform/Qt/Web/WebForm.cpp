#include "Platform/Qt/Web/WebForm.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <memory>
#include <string_view>

namespace korvane {

namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

/// Writes texts in a form's charset, and what the charset lacks as "&#8364;". Source: Encoding Standard,
/// encoding with the error mode "html".
class FormEncoder {
public:
    explicit FormEncoder(const std::string& charset) {
        if (charset == "utf-8") return;
        UErrorCode status = U_ZERO_ERROR;
        converter_.reset(ucnv_open(charset.c_str(), &status));
        if (!converter_) return;
        ucnv_setFallback(converter_.get(), true);
        ucnv_setFromUCallBack(converter_.get(), UCNV_FROM_U_CALLBACK_ESCAPE, UCNV_ESCAPE_XML_DEC, nullptr,
                              nullptr, &status);
    }

    [[nodiscard]] std::string encoded(const QString& text) const {
        if (!converter_) return text.toStdString();
        const auto* const units = reinterpret_cast<const UChar*>(text.utf16());
        const auto length = static_cast<std::int32_t>(text.size());
        UErrorCode status = U_ZERO_ERROR;
        const std::int32_t size = ucnv_fromUChars(converter_.get(), nullptr, 0, units, length, &status);
        std::string bytes(static_cast<std::size_t>(size), '\0');
        status = U_ZERO_ERROR;
        ucnv_fromUChars(converter_.get(), bytes.data(), size, units, length, &status);
        return bytes;
    }

private:
    Converter converter_{nullptr, &ucnv_close};
};

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

std::string urlencoded(const std::vector<WebFormField>& fields, const FormEncoder& encoder) {
    std::string text;
    for (const WebFormField& field : fields) {
        if (!text.empty()) text += '&';
        appendUrlencoded(text, encoder.encoded(withNetworkLines(field.name)));
        text += '=';
        appendUrlencoded(text, encoder.encoded(withNetworkLines(field.value)));
    }
    return text;
}

/// Source: HTML Standard, text/plain encoding algorithm.
std::string plain(const std::vector<WebFormField>& fields, const FormEncoder& encoder) {
    std::string text;
    for (const WebFormField& field : fields) {
        text += encoder.encoded(withNetworkLines(field.name));
        text += '=';
        text += encoder.encoded(withNetworkLines(field.value));
        text += "\r\n";
    }
    return text;
}

/// A name in the quotes of a part's header. Source: HTML Standard, multipart/form-data encoding algorithm.
std::string quoted(const QString& name, const FormEncoder& encoder) {
    std::string text = "\"";
    for (const char byte : encoder.encoded(name)) {
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
std::string multipart(const std::vector<WebFormField>& fields, const FormEncoder& encoder) {
    const std::string boundary =
        "--KorvaneFormBoundary" + QUuid::createUuid().toString(QUuid::Id128).toStdString();
    std::string text;
    for (const WebFormField& field : fields) {
        text += "--";
        text += boundary;
        text += "\r\nContent-Disposition: form-data; name=";
        text += quoted(withNetworkLines(field.name), encoder);
        if (field.fileType) {
            text += "; filename=";
            text += quoted(field.value, encoder);
            text += "\r\nContent-Type: ";
            text += field.fileType->isEmpty() ? "application/octet-stream" : field.fileType->toStdString();
        }
        text += "\r\n\r\n";
        if (!field.fileType) text += encoder.encoded(withNetworkLines(field.value));
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
    const std::string query = urlencoded(*fields, FormEncoder(charset));
    if (query.size() > kMostFormBytes) return std::nullopt;
    const qsizetype mark = action.indexOf(QLatin1Char('#'));
    const QString fragment = mark < 0 ? QString() : action.mid(mark);
    const QString place = action.left(mark).section(QLatin1Char('?'), 0, 0);
    return place + QLatin1Char('?') + QString::fromStdString(query) + fragment;
}

std::optional<Bytes> WebForm::body() const {
    if (!fields) return std::nullopt;
    const FormEncoder encoder(charset);
    std::string text;
    switch (encoding) {
    case WebFormEncoding::urlencoded: text = urlencoded(*fields, encoder); break;
    case WebFormEncoding::multipart: text = multipart(*fields, encoder); break;
    case WebFormEncoding::plain: text = plain(*fields, encoder); break;
    }
    if (text.size() > kMostFormBytes) return std::nullopt;
    return toBytes(text);
}

} // namespace korvane
