#pragma once

#include <string>

/// The files that a save is about to put in their targets' places. A signal that ends the tool (SIGINT, SIGTERM or SIGHUP)
/// removes them first.
namespace bkdoc {

/// From now on these signals remove the unfinished files, and then end the process as they would have. A signal that is
/// ignored stays ignored.
void watch_ending_signals();

/// Holds the signals back while it lives: the files and what is known of them change together. They may be nested.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    [[maybe_unused]] bool is_outermost_ = true;
};

/// Called while the signals are held.
void note_unfinished_file(const std::string& path);
/// Forgets the file if it is this one. Called while the signals are held.
void forget_unfinished_file(const std::string& path);

} // namespace bkdoc
