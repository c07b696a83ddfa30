#pragma once

#include <string>

/// The temporary files of a save that have not replaced their targets yet. A signal that ends the tool (SIGINT, SIGTERM or
/// SIGHUP) removes them first.
namespace bkdoc {

/// From now on these signals remove the unfinished files, and then end the process as usual. An ignored signal stays ignored.
void watch_ending_signals();

/// Blocks the signals while it lives, so that a file and its record change together. May be nested.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    [[maybe_unused]] bool is_outermost_ = true;
};

/// Call it while the signals are blocked.
void note_unfinished_file(const std::string& path);
/// Forgets the file if it is this one. Call it while the signals are blocked.
void forget_unfinished_file(const std::string& path);

} // namespace bkdoc
