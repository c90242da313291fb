#pragma once

#include <string>

/// The string helpers of the configuration file.
class StringUtil
{
public:
    /// @p text without the spaces (code 32 only) at both ends; tabs and carriage returns stay.
    /// An empty text stays empty. A text of spaces alone throws std::out_of_range
    /// ("basic_string::substr"), which nothing catches: such a configuration line is fatal.
    static std::string trim(std::string text);

    /// Stores a fresh NUL-terminated copy of @p text, made with new[], through @p target. What
    /// was stored there before is neither read nor freed; the caller owns the new array.
    static void copy(std::string text, char** target);
};
