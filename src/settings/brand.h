#pragma once

#include <QString>

/// The product variants of GS::brand, the number of which is line 121 of the configuration file.
/// Any other number is allowed, too: a product of no brand. What else of the settings follows from
/// it is GS::applyProductVariant().
enum class Brand : int {
    Qor = 0,
    Tal = 1, ///< the remote-pen product
    Wendle = 2,
    Marrowby = 4,
};

/// The code by which the splash picture and the views know the brand: "qor", "tal", "wendle",
/// "marrowby", or "nobrand" for any other @p brand.
QString brandCode(int brand);

/// Whether GS::brand is this one.
constexpr bool isBrand(int brand, Brand wanted)
{
    return brand == static_cast<int>(wanted);
}
