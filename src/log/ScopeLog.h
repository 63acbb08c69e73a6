#pragma once

#include <exception>
#include <string>

namespace tavocal {

// Logs at INSANE that a function is entered, and that it is left unless an exception leaves it.
class ScopeLog {
  public:
    // The two lines are `opening` + " " + function and "Finished " + function. `tag` is the name
    // that they are logged under.
    ScopeLog(int line, std::string tag, std::string function, const std::string& opening);
    ~ScopeLog();
    ScopeLog(const ScopeLog&) = delete;
    ScopeLog& operator=(const ScopeLog&) = delete;

  private:
    int line;
    std::string tag;
    std::string function;
    int exceptions = std::uncaught_exceptions();
};

}  // namespace tavocal

#define TAVOCAL_SCOPE_STARTED(function) \
    const ::tavocal::ScopeLog scopeLog(__LINE__, function, function, "Started")
#define TAVOCAL_SCOPE_ENTERED(function) \
    const ::tavocal::ScopeLog scopeLog(__LINE__, function, function, "Entered")
