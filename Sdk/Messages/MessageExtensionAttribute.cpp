#include "Sdk/Messages/MessageExtensionAttribute.h"

namespace korvane {

MessageExtensionAttribute MessageExtensionAttribute::decode(const JSONField& field) {
    MessageExtensionAttribute attribute;
    attribute.criticalityIndicator = field.member("criticalityIndicator").boolean();
    attribute.data = field.member("data").stringTable();
    attribute.id = field.member("id").string();
    attribute.name = field.member("name").string();
    return attribute;
}

std::string MessageExtensionAttribute::json() const {
    JSONObjectWriter writer;
    writer.addBoolean("criticalityIndicator", criticalityIndicator);
    writer.addJSON("data", jsonOf(data));
    writer.addString("id", id);
    writer.addString("name", name);
    return std::move(writer).finish();
}

std::string jsonOf(const std::vector<MessageExtensionAttribute>& extensions) {
    std::string json = "[";
    for (const MessageExtensionAttribute& extension : extensions) {
        if (json.size() > 1) json += ',';
        json += extension.json();
    }
    return json + "]";
}

} // namespace korvane
