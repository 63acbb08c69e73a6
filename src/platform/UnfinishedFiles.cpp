#include "platform/UnfinishedFiles.h"

#include <cstdio>

namespace tavocal::platform {

UnfinishedFiles& UnfinishedFiles::instance() {
    static auto* const files = new UnfinishedFiles;
    return *files;
}

void UnfinishedFiles::add(const std::function<std::string()>& make) {
    std::unique_lock<std::mutex> lock(mutex);
    stayIfEnding(lock);
    if (std::string name = make(); !name.empty()) {
        names.insert(std::move(name));
    }
}

void UnfinishedFiles::drop(const std::string& name) {
    std::unique_lock<std::mutex> lock(mutex);
    stayIfEnding(lock);
    names.erase(name);
}

void UnfinishedFiles::stayIfEnding(std::unique_lock<std::mutex>& lock) {
    never.wait(lock, [this] { return !ending; });
}

void UnfinishedFiles::removeAll() {
    const std::lock_guard<std::mutex> lock(mutex);
    ending = true;
    for (const std::string& name : names) {
        std::remove(name.c_str());
    }
}

}  // namespace tavocal::platform
