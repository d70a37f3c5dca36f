#include "platform/NSBundle.h"

#include <dlfcn.h>

#include <filesystem>
#include <utility>

namespace {

namespace fs = std::filesystem;

std::vector<std::string>& resourceFolders();

// Where the file lies that this code was loaded from: the shared library, or the program that it is linked into. The
// system knows a program as it was called, which need not be a path.
fs::path folderOfThisCode() {
    Dl_info info;
    std::error_code failure;
    const bool isFound = dladdr(reinterpret_cast<const void*>(&resourceFolders), &info) != 0 && info.dli_fname;
    const fs::path name = isFound ? info.dli_fname : "";
    const fs::path file = name.has_parent_path() ? fs::canonical(name, failure) : fs::read_symlink("/proc/self/exe", failure);
    return file.parent_path();
}

std::vector<std::string>& resourceFolders() {
    static std::vector<std::string> folders = [] {
        const fs::path here = folderOfThisCode();
        std::vector<std::string> all;
        for (const char* beside : {WQ_RESOURCES_FROM_LIBRARY, WQ_RESOURCES_FROM_PROGRAM}) all.push_back((here / beside).lexically_normal());
        for (const char* built : {WQ_INSTALLED_RESOURCES, WQ_SOURCE_RESOURCES})
            if (*built) all.push_back(built);
        return all;
    }();
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
