#include "tests/Platform/Qt/QtScreenTest.h"
#include "tests/contract/Filling.h"

namespace korvane {

namespace {

class QtFilling final : public Filling, Glass {
public:
    [[nodiscard]] Platform& platform() override { return scene_->platform; }
    [[nodiscard]] bool runUntil(const std::function<bool()>& holds) override { return Scene::waitFor(holds); }
    void end() override { scene_.reset(); }
    void setScreen(CGSize size) override { scene_->resize({"", size, {}}); }
    [[nodiscard]] Glass* glass() override { return this; }

    [[nodiscard]] UIWindow& window() override { return *scene_->host->uiWindow(); }
    [[nodiscard]] unsigned colourAt(CGPoint place) override {
        return scene_->host->picture().pixel(asPoint(place)) & 0xFFFFFFU;
    }
    [[nodiscard]] std::string textOf(const UIView& view) override {
        static_cast<void>(scene_->host->picture()); // takes what has changed over
        std::string all;
        for (const QQuickItem* const text : scene_->textsOf(view))
            all += text->property("text").toString().toStdString();
        return all;
    }
    void touch(const UIWindow::TouchPoint& point) override {
        using enum QEventPoint::State;
        if (point.phase == UITouchPhase::cancelled) return scene_->host->ungrabTouchPoints();
        constexpr QEventPoint::State kStates[] = {Pressed, Updated, Released}; // in the phases' order
        scene_->finger(static_cast<int>(point.identifier), kStates[static_cast<int>(point.phase)],
                       asPoint(point.location));
    }

private:
    struct Scene : QtScreenTest {
        using QtScreenTest::finger, QtScreenTest::host, QtScreenTest::platform, QtScreenTest::resize,
            QtScreenTest::textsOf, QtScreenTest::waitFor;
        void TestBody() override {}
    };

    static QPoint asPoint(CGPoint place) { return QPointF(place.x, place.y).toPoint(); }

    std::optional<Scene> scene_{std::in_place};
};

} // namespace

std::vector<NamedFilling> fillings() {
    return {{"Qt", []() -> std::unique_ptr<Filling> { return std::make_unique<QtFilling>(); }}};
}

} // namespace korvane
