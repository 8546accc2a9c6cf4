#include <VelmarCoreUI/Platform/Primitives/Private/VLXNumberPrinting.h>
#include <VelmarCoreUI/Platform/Primitives/VLXTransform3D.h>

#include <array>
#include <cmath>
#include <ostream>

namespace {

using Matrix = std::array<double, 16>;

Matrix toMatrix(const VLXTransform3D& t) {
    return {t.m11, t.m12, t.m13, t.m14, t.m21, t.m22, t.m23, t.m24,
            t.m31, t.m32, t.m33, t.m34, t.m41, t.m42, t.m43, t.m44};
}

VLXTransform3D fromMatrix(const Matrix& m) {
    return VLXTransform3D{m[0], m[1], m[2],  m[3],  m[4],  m[5],  m[6],  m[7],
                          m[8], m[9], m[10], m[11], m[12], m[13], m[14], m[15]};
}

}  // namespace

VLXTransform3D VLXTransform3DMakeRotation(double angle, double x, double y, double z) {
    const double length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0) || !std::isfinite(length)) {
        return VLXTransform3DIdentity;
    }
    x /= length;
    y /= length;
    z /= length;
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    const double k = 1 - c;
    VLXTransform3D t;
    // u² + (1 − u²)·c rather than c + (1 − c)·u²: exact 1 on the axis itself, so a turn about z
    // stays recognisably affine.
    t.m11 = x * x + (1 - x * x) * c;
    t.m12 = k * x * y + s * z;
    t.m13 = k * x * z - s * y;
    t.m21 = k * x * y - s * z;
    t.m22 = y * y + (1 - y * y) * c;
    t.m23 = k * y * z + s * x;
    t.m31 = k * x * z + s * y;
    t.m32 = k * y * z - s * x;
    t.m33 = z * z + (1 - z * z) * c;
    return t;
}

VLXTransform3D VLXTransform3DConcat(const VLXTransform3D& a, const VLXTransform3D& b) {
    const Matrix x = toMatrix(a);
    const Matrix y = toMatrix(b);
    Matrix r{};
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            double sum = 0;
            for (int k = 0; k < 4; ++k) {
                sum += x[row * 4 + k] * y[k * 4 + col];
            }
            r[row * 4 + col] = sum;
        }
    }
    return fromMatrix(r);
}

VLXTransform3D VLXTransform3DTranslate(const VLXTransform3D& t, double tx, double ty, double tz) {
    return VLXTransform3DConcat(VLXTransform3DMakeTranslation(tx, ty, tz), t);
}

VLXTransform3D VLXTransform3DScale(const VLXTransform3D& t, double sx, double sy, double sz) {
    return VLXTransform3DConcat(VLXTransform3DMakeScale(sx, sy, sz), t);
}

VLXTransform3D VLXTransform3DRotate(const VLXTransform3D& t, double angle, double x, double y,
                                    double z) {
    return VLXTransform3DConcat(VLXTransform3DMakeRotation(angle, x, y, z), t);
}

VLXTransform3D VLXTransform3DInvert(const VLXTransform3D& t) {
    // Cofactor expansion through the 2×2 minors of the top and bottom row pairs.
    const Matrix m = toMatrix(t);
    const double s0 = m[0] * m[5] - m[4] * m[1];
    const double s1 = m[0] * m[6] - m[4] * m[2];
    const double s2 = m[0] * m[7] - m[4] * m[3];
    const double s3 = m[1] * m[6] - m[5] * m[2];
    const double s4 = m[1] * m[7] - m[5] * m[3];
    const double s5 = m[2] * m[7] - m[6] * m[3];
    const double c5 = m[10] * m[15] - m[14] * m[11];
    const double c4 = m[9] * m[15] - m[13] * m[11];
    const double c3 = m[9] * m[14] - m[13] * m[10];
    const double c2 = m[8] * m[15] - m[12] * m[11];
    const double c1 = m[8] * m[14] - m[12] * m[10];
    const double c0 = m[8] * m[13] - m[12] * m[9];
    const double det = s0 * c5 - s1 * c4 + s2 * c3 + s3 * c2 - s4 * c1 + s5 * c0;
    if (det == 0 || !std::isfinite(det)) {
        return t;
    }
    const double inv = 1 / det;
    Matrix r;
    r[0] = (m[5] * c5 - m[6] * c4 + m[7] * c3) * inv;
    r[1] = (-m[1] * c5 + m[2] * c4 - m[3] * c3) * inv;
    r[2] = (m[13] * s5 - m[14] * s4 + m[15] * s3) * inv;
    r[3] = (-m[9] * s5 + m[10] * s4 - m[11] * s3) * inv;
    r[4] = (-m[4] * c5 + m[6] * c2 - m[7] * c1) * inv;
    r[5] = (m[0] * c5 - m[2] * c2 + m[3] * c1) * inv;
    r[6] = (-m[12] * s5 + m[14] * s2 - m[15] * s1) * inv;
    r[7] = (m[8] * s5 - m[10] * s2 + m[11] * s1) * inv;
    r[8] = (m[4] * c4 - m[5] * c2 + m[7] * c0) * inv;
    r[9] = (-m[0] * c4 + m[1] * c2 - m[3] * c0) * inv;
    r[10] = (m[12] * s4 - m[13] * s2 + m[15] * s0) * inv;
    r[11] = (-m[8] * s4 + m[9] * s2 - m[11] * s0) * inv;
    r[12] = (-m[4] * c3 + m[5] * c1 - m[6] * c0) * inv;
    r[13] = (m[0] * c3 - m[1] * c1 + m[2] * c0) * inv;
    r[14] = (-m[12] * s3 + m[13] * s1 - m[14] * s0) * inv;
    r[15] = (m[8] * s3 - m[9] * s1 + m[10] * s0) * inv;
    return fromMatrix(r);
}

std::ostream& operator<<(std::ostream& os, const VLXTransform3D& t) {
    const Matrix m = toMatrix(t);
    os << '[';
    for (int i = 0; i < 16; ++i) {
        if (i > 0) {
            os << (i % 4 == 0 ? "; " : ", ");
        }
        vlx::detail::printNumber(os, m[i]);
    }
    return os << ']';
}
