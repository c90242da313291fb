#include "base/stringutil.h"

#include <cstring>
#include <stdexcept>

std::string StringUtil::trim(std::string text)
{
    if (text.empty())
        return text;
    const std::size_t first = text.find_first_not_of(' ');
    // Thrown by hand, since substr() itself would add its arguments to the text.
    if (first == std::string::npos)
        throw std::out_of_range("basic_string::substr");
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

void StringUtil::copy(std::string text, char** target)
{
    auto* fresh = new char[text.size() + 1];
    std::memcpy(fresh, text.c_str(), text.size() + 1);
    *target = fresh;
}
