#pragma once

#include "Sdk/Messages/CRes.h"
#include "Ui/Screens/ChallengeViewController.h"
#include "Ui/Screens/Orientation.h"

#include <map>
#include <memory>

namespace korvane {

/// The screens of one step of a challenge, with the response that they show. Immutable.
class ViewControllerContainer {
public:
    using ControllersMap = std::map<Orientation, std::shared_ptr<ChallengeViewController>>;

    ViewControllerContainer(CRes cRes, bool isHtml, ControllersMap controllersMap)
        : cRes_(std::move(cRes)), isHtmlChallenge_(isHtml), controllersMap_(std::move(controllersMap)) {}

    [[nodiscard]] const CRes& cRes() const noexcept { return cRes_; }
    [[nodiscard]] bool isHtmlChallenge() const noexcept { return isHtmlChallenge_; }
    /// One for each orientation; of a page of the ACS's only one, under `PORTRAIT`.
    [[nodiscard]] const ControllersMap& controllersMap() const noexcept { return controllersMap_; }

private:
    CRes cRes_;
    bool isHtmlChallenge_;
    ControllersMap controllersMap_;
};

} // namespace korvane
