#include "Platform/View/UIOutlet.h"

namespace korvane {

UIOutletBase* UIOutletOwner::outlet(std::string_view named) const {
    for (UIOutletBase* outlet : outlets_)
        if (outlet->name() == named) return outlet;
    return nullptr;
}

} // namespace korvane
