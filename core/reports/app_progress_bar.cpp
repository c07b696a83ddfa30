#include "core/app_progress_bar.h"

AppProgressBar::~AppProgressBar() = default;

void AppProgressBar::begin_task(const CoreString& /*label*/, const float& /*share*/, const bool& /*flag*/) {}

void AppProgressBar::begin_task(const bool& /*flag*/) {}

void AppProgressBar::set_step_count(const unsigned int& /*count*/) {}

void AppProgressBar::step(const unsigned int& /*step*/) {}

void AppProgressBar::set_value(const float& /*value*/) {}

unsigned int AppProgressBar::end_task() {
    return 0;
}
