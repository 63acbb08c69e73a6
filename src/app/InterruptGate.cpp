#include "app/InterruptGate.h"

namespace tavocal {

InterruptGate& InterruptGate::instance() {
    static auto* const gate = new InterruptGate;
    return *gate;
}

void InterruptGate::pass(const std::function<void()>& work) {
    enter();
    try {
        work();
    } catch (...) {
        leave();
        throw;
    }
    leave();
}

void InterruptGate::endRun() {
    std::unique_lock<std::mutex> lock(mutex);
    stayUnless(word != Word::Interrupt, lock);
    word = Word::MainThread;
}

void InterruptGate::announce() {
    std::unique_lock<std::mutex> lock(mutex);
    stayUnless(word != Word::MainThread, lock);
    word = Word::Interrupt;
}

bool InterruptGate::close(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, time, [this] { return !working; });
}

void InterruptGate::stayUnless(bool mayGoOn, std::unique_lock<std::mutex>& lock) {
    changed.wait(lock, [mayGoOn] { return mayGoOn; });
}

void InterruptGate::enter() {
    std::unique_lock<std::mutex> lock(mutex);
    stayUnless(word != Word::Interrupt, lock);
    working = true;
}

void InterruptGate::leave() {
    std::unique_lock<std::mutex> lock(mutex);
    working = false;
    changed.notify_all();
    stayUnless(word != Word::Interrupt, lock);
}

}  // namespace tavocal
