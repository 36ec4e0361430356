// CKesraAxis: the state of the small axis triad drawn in a corner of the view
// to show the model's orientation.
//
// It holds whether it is created and to be drawn, the window size (pixels)
// with two scale factors derived from it, and a copy of the camera's rotation
// matrix (laid out as the camera lays it out), which the host hands on
// whenever the camera turns. The triad is 80 pixels across; scale x and
// scale y give that extent as a fraction of the window's width and height.
//
// Lifecycle: construct (not created, to be drawn, zero matrix), Create (size,
// identity matrix), use, Delete (clears the created flag only).
//
// The class is the base of a drawing backend's triad: its constructor is
// protected and its one abstract operation, Draw, is the backend's. The
// library never calls it.
#pragma once

#include "MathKit/Export.h"
#include "MathKit/Matrix4.h"

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraAxis
{
public:
    using Matrix = KesraMathKit::TKesraMatrix4<double>;

    CKesraAxis(const CKesraAxis&) = default;
    CKesraAxis& operator=(const CKesraAxis&) = default;
    ~CKesraAxis() = default;

    // Draws the triad with the stored rotation in a corner of the window.
    virtual void Draw() = 0;

    // False, with nothing changed, when width or height is 0. Otherwise stores
    // the size and the scales, resets the matrix to the identity and marks the
    // triad created; a created triad may be created again.
    bool Create(int width, int height);
    // False when not created; otherwise clears the created flag only.
    bool Delete();
    int IsCreate() const { return m_created; }

    // Stored unchanged, any value.
    void SetDrawAxis(int draw) { m_drawAxis = draw; }
    int GetDrawAxis() const { return m_drawAxis; }

    // Stores the size and recomputes the scales; refuses nothing and leaves
    // the matrix and the created flag alone. A zero side gives an infinite
    // scale along it.
    void SetWindowSize(int width, int height);
    void GetWindowSize(int& width, int& height) const;

    void SetRotateMatrix(const Matrix& matrix) { m_rotateMatrix = matrix; }
    // The stored matrix itself, valid as long as the triad lives.
    const Matrix& GetRotateMatrix() const { return m_rotateMatrix; }

protected:
    CKesraAxis();

    int m_created;
    int m_drawAxis;
    int m_windowWidth;
    int m_windowHeight;
    float m_scaleX;
    float m_scaleY;
    Matrix m_rotateMatrix;
};

} // namespace KesraEngine
