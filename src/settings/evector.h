#pragma once

#include <array>
#include <cstdint>

struct EVectorSegment;

/**
 * A point or a direction in the camera's image plane, in pixels.
 *
 * A plain value. Copies carry everything; the result of an operation is a fresh vector that is
 * built from its coordinates alone, with zeroed attributes.
 *
 * Division by a vector is guarded, division by a number is not: callers rely on both.
 */
class EVector
{
public:
    EVector(double vectorX, double vectorY);

    EVector operator+(EVector o) const;
    EVector operator-(EVector o) const;
    EVector operator*(EVector o) const; ///< component by component
    EVector operator*(double k) const;
    EVector operator/(EVector o) const; ///< component by component; (0, 0) if either of @p o is 0
    EVector operator/(double k) const; ///< no guard: k = 0 gives infinities or NaN

    EVector& operator+=(EVector o);
    EVector& operator-=(EVector o);
    EVector& operator*=(EVector o);
    EVector& operator*=(double k);
    EVector& operator/=(double k); ///< no guard against 0

    /// x·o.y − y·o.x: positive when @p o is counter-clockwise from this in a y-up frame.
    double cross(EVector o) const;

    double length() const;

    /// Signed angle to @p o in degrees, −180 … 180, with the sign of cross(). 0.0 where it is not
    /// defined: a vector without length, or a cosine that rounding pushed beyond ±1.
    double angle(EVector o) const;

    /// The coordinates alone, attributes zeroed.
    EVector Clone() const;

    /// The alternative point, with the two attributes that belong to it.
    EVector altPoint() const;

    /// Whether the segments cross in one inner point of both. Touching, overlapping and
    /// zero-length segments do not cross.
    static bool segmentsIntersect(EVectorSegment a, EVectorSegment b);

    double x;
    double y;

    // Attributes: carried along by copies, without a meaning of their own here.
    std::array<double, 4> attributes {};
    std::array<std::int64_t, 3> attributeBlock {};
    bool attributeFlag = false;
    std::int64_t attributeValue = 0;
    std::int32_t attributeNumber = 0;
    double altX = 0.0;
    double altY = 0.0;
    std::array<std::int64_t, 2> altAttributes {};
    std::int64_t trailingValue = 0;
    std::int16_t trailingShort = 0;
    std::int32_t trailingNumber = 0;
};

/// A straight piece between two points.
struct EVectorSegment
{
    EVector start;
    EVector end;
};
