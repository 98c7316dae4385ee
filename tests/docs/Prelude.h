// What the blocks of docs/integration.md take for granted: headers, and names that are the application's own.

#include <korvane/QtPlatform.h>
#include <korvane/korvane.h>
#include <korvane/platform/UIActivityIndicatorView.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cstdio>
#include <functional>
#include <map>

void sendToThreeDSServer(const QJsonObject& request);
std::shared_ptr<korvane::ConfigParameters> makeConfiguration();
std::shared_ptr<korvane::UiCustomization> brandLook();
std::shared_ptr<korvane::UiCustomizationConstraints> roomyPlaces();
