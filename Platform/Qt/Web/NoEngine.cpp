#include "Platform/Qt/Web/PageEngine.h"

namespace korvane {

const PageEngine* PageEngine::ofBuild() {
    return nullptr;
}

} // namespace korvane
