#include "platform/NSBundle.h"

#include <filesystem>
#include <utility>

namespace {
std::vector<std::string>& resourceFolders() {
    static std::vector<std::string> folders = {WQ_INSTALLED_RESOURCES, WQ_SOURCE_RESOURCES};
    return folders;
}
}  // namespace

NSString NSBundle::pathForResource_ofType(const NSString& name, const NSString& extension) {
    if (!name) return nullptr;
    std::string file = wq::toUTF8(name);
    if (extension.length() > 0) file.append(".").append(wq::toUTF8(extension));
    for (const std::string& folder : resourceFolders()) {
        const std::filesystem::path path = std::filesystem::path(folder) / file;
        std::error_code absent;
        if (std::filesystem::is_regular_file(path, absent)) return wq::fromUTF8(path.string());
    }
    return nullptr;
}

std::vector<std::string> NSBundle::setResourceFolders(std::vector<std::string> folders) {
    return std::exchange(resourceFolders(), std::move(folders));
}
