#include "tests/Ui/Gallery.h"

namespace korvane {
namespace {

using testing::IsEmpty;

constexpr UiType kKinds[] = {UiType::TEXT, UiType::SINGLE_SELECT, UiType::MULTI_SELECT, UiType::OOB,
                             UiType::HTML_OTHER};

class Gallery : public ScreenTest {
protected:
    std::shared_ptr<ChallengeViewController> showOn(const GalleryScreen& on, const CRes& cRes) {
        resize(on.size, on.safeArea);
        const auto container = factory().getViewControllerContainer(cRes);
        return show<ChallengeViewController>(container, container.isHtmlChallenge() ? Orientation::PORTRAIT
                                                                                    : on.orientation());
    }
};

TEST_F(Gallery, NothingOverlapsOrLacksRoomOnAnyScreenOpenOrClosed) {
    struct Row {
        const char* name;
        CRes (*make)(UiType);
    };
    for (const Row& row : {Row{"full", fullCRes}, Row{"long", longCRes}, Row{"bare", bareCRes}}) {
        for (const UiType kind : kKinds) {
            for (const GalleryScreen& on : galleryScreens()) {
                SCOPED_TRACE(testing::Message() << row.name << " " << rawValue(kind) << " " << on.name);
                const auto screen = showOn(on, row.make(kind));
                EXPECT_THAT(geometryFaults(*screen->view()), IsEmpty());
                const auto native = std::dynamic_pointer_cast<ChallengeNativeViewController>(screen);
                if (!native) continue;
                native->inverseWhyInfoDisplaying();
                native->inverseExtInfoDisplaying();
                native->scrollView->setContentOffset(
                    {0, 0}); // or else the bar lies over what is scrolled away
                settle();
                EXPECT_THAT(geometryFaults(*screen->view()), IsEmpty()) << "open";
                EXPECT_EQ(native->scrollView->contentSize().height, CGRectGetMaxY(native->extInfo->frame()));
            }
        }
    }
}

} // namespace
} // namespace korvane
