#include "settings/brand.h"

namespace {

struct BrandCode
{
    Brand brand;
    const char* code;
};

constexpr BrandCode brandCodes[] = {
    {Brand::Qor, "qor"},
    {Brand::Tal, "tal"},
    {Brand::Wendle, "wendle"},
    {Brand::Marrowby, "marrowby"},
};

} // namespace

QString brandCode(int brand)
{
    for (const BrandCode& entry : brandCodes) {
        if (isBrand(brand, entry.brand))
            return QLatin1String(entry.code);
    }
    return QStringLiteral("nobrand");
}
