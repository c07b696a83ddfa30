#include "parser/parser_file.h"

#include <iostream>

/// Shows how far a read is, by the application's own progress bar.
class Bar : public AppProgressBar {
public:
    void begin_task(const bool&) override { ++depth_; }
    void begin_task(const CoreString&, const float&, const bool&) override { ++depth_; }
    unsigned int end_task() override { return --depth_; }
    void set_value(const float& value) override {
        if (const int tenths = static_cast<int>(value * 10.0f); tenths > shown_) {
            shown_ = tenths;
            std::cout << tenths * 10 << " %\n";
        }
    }
    unsigned int depth() const { return depth_; }

private:
    unsigned int depth_ = 0;
    int shown_ = 0;
};

int main() {
    CoreString text;
    for (int i = 0; i < 1000; ++i) {
        text += "power 60 ";
    }
    Bar bar;
    ParserGroup root("root");
    root.set_text(text, default_parser_serial_version, &bar);
    std::cout << root.get_entry_count() << " entries, " << bar.depth() << " tasks left open\n";
}
