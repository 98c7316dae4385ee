#include "Sdk/Messages/Erro.h"

#include "Platform/JSONDecoding.h"

#include <array>

namespace korvane {

namespace {

struct FieldRow {
    std::string_view name;
    std::optional<std::string> Erro::*member;
};

constexpr std::array<FieldRow, 11> kFields{{
    {"threeDSServerTransID", &Erro::threeDSServerTransID},
    {"acsTransID", &Erro::acsTransID},
    {"dsTransID", &Erro::dsTransID},
    {"errorCode", &Erro::errorCode},
    {"errorComponent", &Erro::errorComponent},
    {"errorDescription", &Erro::errorDescription},
    {"errorDetail", &Erro::errorDetail},
    {"errorMessageType", &Erro::errorMessageType},
    {"messageType", &Erro::messageType},
    {"messageVersion", &Erro::messageVersion},
    {"sdkTransID", &Erro::sdkTransID},
}};

} // namespace

std::string Erro::jsonString() const {
    JSONObjectWriter writer;
    for (const FieldRow& row : kFields)
        if (const auto& value = this->*row.member) writer.addString(row.name, *value);
    return std::move(writer).finish();
}

Erro Erro::decode(ByteView json) {
    const JSON value = decodeObject(asText(json));
    const JSONField object(value);
    Erro erro;
    for (const FieldRow& row : kFields)
        if (const auto field = object.memberIfPresent(row.name)) erro.*row.member = field->string();
    return erro;
}

ErrorMessage convertErroToErrorMessage(const Erro& erro) {
    return {erro.errorCode.value_or("-2"), erro.errorDescription.value_or("Unknown error"),
            erro.errorDetail.value_or("No details"), erro.acsTransID.value_or("")};
}

} // namespace korvane
