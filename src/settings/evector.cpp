#include "settings/evector.h"

#include <cmath>

EVector::EVector(double vectorX, double vectorY)
    : x(vectorX)
    , y(vectorY)
{
}

EVector EVector::operator+(EVector o) const
{
    return {x + o.x, y + o.y};
}

EVector EVector::operator-(EVector o) const
{
    return {x - o.x, y - o.y};
}

EVector EVector::operator*(EVector o) const
{
    return {x * o.x, y * o.y};
}

EVector EVector::operator*(double k) const
{
    return {x * k, y * k};
}

EVector EVector::operator/(EVector o) const
{
    if (o.x == 0.0 || o.y == 0.0)
        return {0.0, 0.0};
    return {x / o.x, y / o.y};
}

EVector EVector::operator/(double k) const
{
    return {x / k, y / k};
}

EVector& EVector::operator+=(EVector o)
{
    x += o.x;
    y += o.y;
    return *this;
}

EVector& EVector::operator-=(EVector o)
{
    x -= o.x;
    y -= o.y;
    return *this;
}

EVector& EVector::operator*=(EVector o)
{
    x *= o.x;
    y *= o.y;
    return *this;
}

EVector& EVector::operator*=(double k)
{
    x *= k;
    y *= k;
    return *this;
}

EVector& EVector::operator/=(double k)
{
    x /= k;
    y /= k;
    return *this;
}

double EVector::cross(EVector o) const
{
    return x * o.y - y * o.x;
}

double EVector::length() const
{
    return std::sqrt(x * x + y * y);
}

double EVector::angle(EVector o) const
{
    constexpr double pi = 3.141592653589793;
    const double dot = x * o.x + y * o.y;
    double a = 180.0 * std::acos(dot / (o.length() * length())) / pi;
    if (cross(o) < 0.0)
        a = -a;
    return std::isnan(a) ? 0.0 : a;
}

EVector EVector::Clone() const
{
    return {x, y};
}

EVector EVector::altPoint() const
{
    EVector point(altX, altY);
    point.altAttributes = altAttributes;
    return point;
}

bool EVector::segmentsIntersect(EVectorSegment a, EVectorSegment b)
{
    const EVector alongA = a.end - a.start;
    const double d1 = alongA.cross(b.start - a.start);
    const double d2 = alongA.cross(b.end - a.start);
    const EVector alongB = b.end - b.start;
    const double d3 = alongB.cross(a.start - b.start);
    const double d4 = alongB.cross(a.end - b.start);
    return d1 * d2 < 0.0 && d3 * d4 < 0.0;
}
