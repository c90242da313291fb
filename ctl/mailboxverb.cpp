#include "ctl/mailboxverb.h"

#include <algorithm>

const std::array<MailboxVerb, 20>& MailboxVerb::all()
{
    static const std::array<MailboxVerb, 20> verbs {{
        {"calibrate manual", 'm', "start the manual calibration"},
        {"calibrate touch", 't', "start the touch calibration"},
        {"calibrate auto", 'a', "start the auto calibration"},
        {"reset", '0', "forget the calibration"},
        {"pause", '8', "pause the calibration, or resume it"},
        {"input stylus", 's', "choose the pen"},
        {"input finger", 'f', "choose the finger"},
        {"pointer single", '5', "one pointer, as of a mouse"},
        {"pointer multi", '6', "several pointers, as of fingers"},
        {"offset", '7', "correct the offset"},
        {"rayline", '4', "calibrate the ray line"},
        {"parallax", 'p', "correct the parallax"},
        {"sensor-viewer", 'v', "open the sensor viewer"},
        {"reload", '9', "let the engine read its camera configuration again"},
        {"show", 'w', "show the window"},
        {"hide", 'h', "hide the window"},
        {"log", 'l', "open the log window"},
        {"sleep", 'z', "end the engine, as before the machine sleeps"},
        {"wake", 'u', "start the engine again"},
        {"quit", 'q', "quit the program"},
    }};
    return verbs;
}

const MailboxVerb* MailboxVerb::find(const QString& words)
{
    const auto& verbs = all();
    const auto* const found =
        std::find_if(verbs.begin(), verbs.end(),
                     [&words](const MailboxVerb& verb) { return words == verb.words; });
    return found == verbs.end() ? nullptr : found;
}
