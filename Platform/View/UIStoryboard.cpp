#include "Platform/View/UIStoryboard.h"

#include "Platform/Platform.h"
#include "Platform/View/FileCache.h"
#include "Platform/View/StoryboardScene.h"
#include "Platform/View/UIActivityIndicatorView.h"
#include "Platform/View/UIButton.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UITextView.h"
#include "Platform/View/WKWebView.h"

#include <algorithm>
#include <exception>
#include <mutex>

namespace korvane {

namespace {

using Case = UIStoryboardErrorCase;

template <class Class>
std::shared_ptr<NSObject> makeOne() {
    return std::make_shared<Class>();
}

/// The classes that storyboards can name.
struct Registry {
    std::mutex mutex;
    std::map<std::string, UIStoryboard::Factory> factories{
        {"UIView", makeOne<UIView>},
        {"UILabel", makeOne<UILabel>},
        {"UITextView", makeOne<UITextView>},
        {"UITextField", makeOne<UITextField>},
        {"UIButton", makeOne<UIButton>},
        {"UIImageView", makeOne<UIImageView>},
        {"UIScrollView", makeOne<UIScrollView>},
        {"UITableView", makeOne<UITableView>},
        {"UITableViewCell", makeOne<UITableViewCell>},
        {"UINavigationBar", makeOne<UINavigationBar>},
        {"UIActivityIndicatorView", makeOne<UIActivityIndicatorView>},
        {"WKWebView", makeOne<WKWebView>},
        {"UIViewController", makeOne<UIViewController>}};

    static Registry& shared() {
        static Registry registry;
        return registry;
    }
};

[[noreturn]] void fail(Case kind, const std::string& what) {
    throw UIStoryboardError(kind, Description{what});
}

/// The scenes of a storyboard's file, or null if it is broken.
std::shared_ptr<const JSON> scenes(const Bytes& file) {
    const auto json = JSONSerialization::jsonObject(asText(file));
    if (!json || !json->is_object()) return nullptr;
    const auto found = json->find("scenes");
    if (found == json->end() || !found->is_object()) return nullptr;
    return std::make_shared<const JSON>(*found);
}

/// The main screen, turned as a scene wants it.
CGRect designFrame(const JSON& scene) {
    const CGSize screen = Platform::current().mainScreen().bounds().size;
    const auto wanted = scene.find("orientation");
    if (wanted == scene.end()) return {{0, 0}, screen};
    const auto [least, most] = std::minmax(screen.width, screen.height);
    return *wanted == "landscape" ? CGRect{{0, 0}, {most, least}} : CGRect{{0, 0}, {least, most}};
}

} // namespace

std::shared_ptr<NSObject> makeRegistered(const std::string& className) {
    UIStoryboard::Factory factory;
    {
        Registry& registry = Registry::shared();
        const std::scoped_lock lock(registry.mutex);
        const auto found = registry.factories.find(className);
        if (found == registry.factories.end()) return nullptr;
        factory = found->second;
    }
    return factory();
}

void UIStoryboard::registerClass(const std::string& name, Factory factory) {
    Registry& registry = Registry::shared();
    const std::scoped_lock lock(registry.mutex);
    registry.factories[name] = std::move(factory);
}

UIStoryboard::UIStoryboard(std::string name, std::shared_ptr<const NSBundle> bundle)
    : name_(std::move(name)) {
    static FileCache<JSON> files;
    const auto path = bundle->URLForResource(name_, "json");
    if (!path) fail(Case::resourceMissing, "the storyboard \"" + name_ + "\" is missing");
    std::shared_ptr<const JSON> known;
    try {
        known = files.get(*path, scenes);
    } catch (const std::exception&) {
        fail(Case::resourceMissing, "the storyboard \"" + name_ + "\" cannot be read");
    }
    if (!known) fail(Case::resourceBroken, "the storyboard \"" + name_ + "\" is broken");
    content_ = std::make_shared<const StoryboardContent>(
        StoryboardContent{std::move(known), StoryboardResources(std::move(bundle))});
}

bool UIStoryboard::hasIdentifier(const std::string& identifier) const {
    return content_->scenes->contains(identifier);
}

std::shared_ptr<UIViewController>
UIStoryboard::instantiateViewController(const std::string& withIdentifier) const {
    const auto found = content_->scenes->find(withIdentifier);
    if (found == content_->scenes->end())
        fail(Case::identifierMissing,
             "the storyboard \"" + name_ + "\" has no scene \"" + withIdentifier + "\"");
    StoryboardScene scene(content_, withIdentifier);
    if (!found->is_object()) scene.fail(Case::resourceBroken, "the scene is no object");
    const JSON named = found->value("class", JSON("UIViewController"));
    const std::string className = named.is_string() ? named.get<std::string>() : named.dump();
    auto controller = std::dynamic_pointer_cast<UIViewController>(makeRegistered(className));
    if (!controller) scene.fail(Case::classUnknown, "no controller is registered as \"" + className + "\"");

    static const JSON nothing = JSON::object();
    const auto described = found->find("view");
    const auto view = scene.makeView(described == found->end() ? nothing : *described);
    for (const auto& [name, object] : scene.outlets()) {
        UIOutletBase* const outlet = controller->outlet(name);
        if (!outlet) scene.fail(Case::outletUnknown, "\"" + className + "\" has no outlet \"" + name + "\"");
        if (!outlet->connect(object))
            scene.fail(Case::outletUnknown, "the outlet \"" + name + "\" is of another class");
    }
    view->setFrame(designFrame(*found));
    view->layoutIfNeeded();
    controller->setViewLoader([view](UIViewController& loaded) { loaded.setView(view); });
    controller->awakeFromNib();
    return controller;
}

} // namespace korvane
