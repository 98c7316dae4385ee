#pragma once

#include "Platform/Qt/Parts/PictureLoader.h"
#include "Platform/View/UIView.h"

#include <QQmlComponent>
#include <QQuickItem>

#include <map>
#include <memory>
#include <string>

class QQmlEngine;

namespace korvane {

class ViewItem;

/// Makes what items consist of, from the QML files of this folder, and fills it from views: the table of
/// kinds is in `PartFactory.cpp`, one row and one function for each kind that shows more than its frame.
/// Main queue only.
class PartFactory {
public:
    explicit PartFactory(QQmlEngine& engine) : engine_(engine) {}

    /// A part that fills its item. A file that is missing or broken ends the process (`fatalError`).
    [[nodiscard]] QQuickItem* make(const std::string& file, QQuickItem& in);

    /// The item of a view; one that assistive technology hears of if the view has a role.
    [[nodiscard]] ViewItem* makeItem(const UIView& view);
    /// Whether an item is still of the kind that its view needs.
    [[nodiscard]] static bool suits(const ViewItem& item, const UIView& view);

    /// What a view of its kind shows; null for kinds that show nothing of their own.
    [[nodiscard]] QQuickItem* makeContent(const UIView& view, ViewItem& in);
    void updateContent(QQuickItem& content, const UIView& view) const;

private:
    [[nodiscard]] QQmlComponent& component(const std::string& file);
    [[nodiscard]] QQuickItem* create(const std::string& file);

    QQmlEngine& engine_;
    PictureLoader pictures_;
    std::map<std::string, std::unique_ptr<QQmlComponent>> components_;
};

} // namespace korvane
