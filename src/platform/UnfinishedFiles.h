#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <set>
#include <string>

namespace tavocal::platform {

// The new files that haven't taken the place of the old ones yet, for a process that ends while it
// writes. Any thread.
class UnfinishedFiles {
  public:
    // Of this process.
    static UnfinishedFiles& instance();

    // `make` makes the file and gives its name, as the platform takes it; empty if it couldn't.
    void add(const std::function<std::string()>& make);
    // It is whole and in its place, or gone.
    void drop(const std::string& name);
    // Removes them all. Whoever adds or drops one from then on stays there until the process ends.
    void removeAll();

  private:
    void stayIfEnding(std::unique_lock<std::mutex>& lock);

    std::mutex mutex;
    std::condition_variable never;
    bool ending = false;
    std::set<std::string> names;
};

inline void removeUnfinishedFiles() {
    UnfinishedFiles::instance().removeAll();
}

}  // namespace tavocal::platform
