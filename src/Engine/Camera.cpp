#include "Engine/Camera.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <iterator>
#include <utility>

namespace KesraEngine
{

namespace
{

using Matrix = CKesraCamera::Matrix;
using Vector = CKesraCamera::Vector;

using ViewRotation = KesraMathKit::TKesraViewRotation<double>;
using KesraMathKit::eStandardView;

} // namespace

// ---- Construction -----------------------------------------------------------

CKesraCamera::CKesraCamera(int width, int height)
    : m_name("Default"),
      m_windowWidth(width),
      m_windowHeight(height),
      m_halfWidth(width / 2),
      m_halfHeight(height / 2),
      m_viewLeft(0.0f),
      m_viewRight(0.0f),
      m_viewBottom(0.0f),
      m_viewTop(0.0f),
      m_viewNear(0.0f),
      m_viewFar(0.0f),
      m_rotateMatrix(Matrix::IDENTITY),
      m_scale(1.0f),
      m_translationX(0.0f),
      m_translationY(0.0f),
      m_negRotateCenter{0.0f, 0.0f, 0.0f},
      m_modified(1),
      m_worldToViewMatrix(Matrix::IDENTITY),
      m_smoothStartAngles(),
      m_smoothTargetAngles(),
      m_smoothRotateFrames(5),
      m_smoothCurrentFrame(0),
      m_smoothRotating(false),
      m_sixSidesCycleFrames(60),
      m_sixSidesCurrentFrame(0),
      m_sixSidesSidePauses(10),
      m_sixSidesPauseCounter(0),
      m_sixSidesPhaseAngles{0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
      m_sixSidesInspection(false)
{
    UpdateViewBounds();
}

CKesraCamera::~CKesraCamera() = default;

CKesraCamera& CKesraCamera::operator=(const CKesraCamera& other)
{
    // The two copies that can fail come first; everything after them is a
    // plain value or a swap, so a failure changes nothing.
    std::string name(other.m_name);
    std::vector<IKesraCameraEventHandler*> handlers(other.m_eventHandlers);
    m_name.swap(name);
    m_windowWidth = other.m_windowWidth;
    m_windowHeight = other.m_windowHeight;
    m_halfWidth = other.m_halfWidth;
    m_halfHeight = other.m_halfHeight;
    m_viewLeft = other.m_viewLeft;
    m_viewRight = other.m_viewRight;
    m_viewBottom = other.m_viewBottom;
    m_viewTop = other.m_viewTop;
    m_viewNear = other.m_viewNear;
    m_viewFar = other.m_viewFar;
    m_rotateMatrix = other.m_rotateMatrix;
    m_scale = other.m_scale;
    m_translationX = other.m_translationX;
    m_translationY = other.m_translationY;
    std::copy(std::begin(other.m_negRotateCenter), std::end(other.m_negRotateCenter),
              std::begin(m_negRotateCenter));
    m_modified = other.m_modified;
    m_worldToViewMatrix = other.m_worldToViewMatrix;
    m_smoothStartAngles = other.m_smoothStartAngles;
    m_smoothTargetAngles = other.m_smoothTargetAngles;
    m_smoothRotateFrames = other.m_smoothRotateFrames;
    m_smoothCurrentFrame = other.m_smoothCurrentFrame;
    m_smoothRotating = other.m_smoothRotating;
    m_sixSidesCycleFrames = other.m_sixSidesCycleFrames;
    m_sixSidesCurrentFrame = other.m_sixSidesCurrentFrame;
    m_sixSidesSidePauses = other.m_sixSidesSidePauses;
    m_sixSidesPauseCounter = other.m_sixSidesPauseCounter;
    std::copy(std::begin(other.m_sixSidesPhaseAngles), std::end(other.m_sixSidesPhaseAngles),
              std::begin(m_sixSidesPhaseAngles));
    m_sixSidesInspection = other.m_sixSidesInspection;
    m_eventHandlers.swap(handlers);
    // m_handlerWalks stays: it belongs to this object's own call stack.
    return *this;
}

// ---- Observers ----------------------------------------------------------------

bool CKesraCamera::RegisterEventHandler(IKesraCameraEventHandler* handler)
{
    return m_handlerWalks.Add(m_eventHandlers, handler);
}

bool CKesraCamera::UnregisterEventHandler(IKesraCameraEventHandler* handler)
{
    return m_handlerWalks.Remove(m_eventHandlers, handler);
}

// Arguments are read from the fields anew for every handler: a handler that
// changes the camera silently changes what the handlers after it receive.
void CKesraCamera::NotifyRotateMatUpdate()
{
    m_handlerWalks.ForEach(m_eventHandlers, [this](IKesraCameraEventHandler& handler) {
        handler.OnRotateMatUpdate(m_rotateMatrix);
    });
}

void CKesraCamera::NotifyTranslateUpdate()
{
    m_handlerWalks.ForEach(m_eventHandlers, [this](IKesraCameraEventHandler& handler) {
        handler.OnTranslateUpdate(m_translationX, m_translationY);
    });
}

void CKesraCamera::NotifyScaleUpdate()
{
    m_handlerWalks.ForEach(m_eventHandlers, [this](IKesraCameraEventHandler& handler) {
        handler.OnScaleUpdate(m_scale);
    });
}

void CKesraCamera::NotifyTransformUpdate()
{
    m_handlerWalks.ForEach(m_eventHandlers, [this](IKesraCameraEventHandler& handler) {
        handler.OnTransformUpdate(m_rotateMatrix, m_translationX, m_translationY, m_scale);
    });
}

void CKesraCamera::NotifyTransformUpdateInterface()
{
    NotifyTransformUpdate();
}

// ---- State and view transform ---------------------------------------------------

void CKesraCamera::SetName(std::string name)
{
    m_name = std::move(name);
}

std::string CKesraCamera::GetName() const
{
    return m_name;
}

// Kept in float, with float(width) * 0.5f * scale, so that the bounds match
// the host's float arithmetic to the last bit.
void CKesraCamera::UpdateViewBounds()
{
    m_viewRight = static_cast<float>(m_windowWidth) * 0.5f * m_scale;
    m_viewLeft = -m_viewRight;
    m_viewTop = static_cast<float>(m_windowHeight) * 0.5f * m_scale;
    m_viewBottom = -m_viewTop;
    m_viewNear = m_scale * -10000.0f;
    m_viewFar = m_scale * 10000.0f;
}

bool CKesraCamera::IsUsableScale(float scale)
{
    return std::isfinite(scale) && scale > 0.0f;
}

void CKesraCamera::SetWindowSize(int width, int height)
{
    m_windowWidth = width;
    m_windowHeight = height;
    m_halfWidth = width / 2;
    m_halfHeight = height / 2;
    UpdateViewBounds();
    MarkModified();
}

void CKesraCamera::GetWindowSize(int& width, int& height) const
{
    width = m_windowWidth;
    height = m_windowHeight;
}

void CKesraCamera::GetParameters(float& left, float& right, float& bottom, float& top,
                                 float& nearBound, float& farBound)
{
    UpdateViewBounds();
    int width = 0;
    int height = 0;
    GetParametersDirect(left, right, bottom, top, nearBound, farBound, width, height);
}

void CKesraCamera::GetParametersDirect(float& left, float& right, float& bottom, float& top,
                                       float& nearBound, float& farBound, int& width,
                                       int& height) const
{
    GetWidthParametersDirect(left, right, width);
    GetHeightParametersDirect(bottom, top, height);
    nearBound = m_viewNear;
    farBound = m_viewFar;
}

void CKesraCamera::GetWidthParametersDirect(float& left, float& right, int& width) const
{
    left = m_viewLeft;
    right = m_viewRight;
    width = m_windowWidth;
}

void CKesraCamera::GetHeightParametersDirect(float& bottom, float& top, int& height) const
{
    bottom = m_viewBottom;
    top = m_viewTop;
    height = m_windowHeight;
}

void CKesraCamera::UpdateViewPortParameters()
{
    UpdateViewBounds();
}

void CKesraCamera::SetTransformNoEventHandler(const Matrix& rotation, float translationX,
                                              float translationY, float scale)
{
    if (!IsUsableScale(scale))
    {
        return;
    }
    m_rotateMatrix = rotation;
    m_translationX = translationX;
    m_translationY = translationY;
    m_scale = scale;
    UpdateViewBounds();
    MarkModified();
}

void CKesraCamera::SetRotateMatrix(const Matrix& rotation)
{
    SetRotateMatrixNoEventHandler(rotation);
    NotifyRotateMatUpdate();
}

void CKesraCamera::SetRotateMatrixNoEventHandler(const Matrix& rotation)
{
    m_rotateMatrix = rotation;
    MarkModified();
}

void CKesraCamera::SetScale(float scale)
{
    if (!IsUsableScale(scale))
    {
        return;
    }
    SetScaleNoEventHandler(scale);
    NotifyScaleUpdate();
}

void CKesraCamera::SetScaleNoEventHandler(float scale)
{
    // 1/scale enters the world-to-view matrix; zero, negative or non-finite
    // scales would make it meaningless.
    if (!IsUsableScale(scale))
    {
        return;
    }
    m_scale = scale;
    UpdateViewBounds();
    MarkModified();
}

void CKesraCamera::SetTranslation(float x, float y)
{
    SetTranslationNoEventHandler(x, y);
    NotifyTranslateUpdate();
}

void CKesraCamera::SetTranslationNoEventHandler(float x, float y)
{
    m_translationX = x;
    m_translationY = y;
    MarkModified();
}

void CKesraCamera::GetTranslation(float& x, float& y) const
{
    x = m_translationX;
    y = m_translationY;
}

void CKesraCamera::SetRotateCenter(float x, float y, float z)
{
    m_negRotateCenter[0] = -x;
    m_negRotateCenter[1] = -y;
    m_negRotateCenter[2] = -z;
    MarkModified();
}

void CKesraCamera::GetRotateCenter(float& x, float& y, float& z) const
{
    x = -m_negRotateCenter[0];
    y = -m_negRotateCenter[1];
    z = -m_negRotateCenter[2];
}

void CKesraCamera::ZoomAll(float x0, float x1, float y0, float y1, float z0, float z1)
{
    if (m_windowHeight == 0 || m_windowWidth == 0)
    {
        return;
    }
    const float bounds[6] = {x0, x1, y0, y1, z0, z1};
    if (!std::all_of(std::begin(bounds), std::end(bounds), [](float v) { return std::isfinite(v); }))
    {
        return;
    }

    // Differences, squares and sum in float; only the root is taken in double.
    const KesraMathKit::TKesraVector3<float> extent(x1 - x0, y1 - y0, z1 - z0);
    const float diagonal = static_cast<float>(std::sqrt(static_cast<double>(extent.Dot(extent))));
    const float scale = diagonal / static_cast<float>(std::min(m_windowWidth, m_windowHeight));

    // A box without extent (or a window with a negative side) gives no usable
    // scale: keep the current one and still centre the box.
    if (IsUsableScale(scale))
    {
        m_scale = scale;
    }
    m_translationX = 0.0f;
    m_translationY = 0.0f;
    MarkModified();
    m_negRotateCenter[0] = -((x0 + x1) * 0.5f);
    m_negRotateCenter[1] = -((y0 + y1) * 0.5f);
    m_negRotateCenter[2] = -((z0 + z1) * 0.5f);
    UpdateViewBounds();
    NotifyTransformUpdate();
}

void CKesraCamera::ZoomAll(const float* const box)
{
    if (box == nullptr)
    {
        return;
    }
    ZoomAll(box[0], box[1], box[2], box[3], box[4], box[5]);
}

Vector CKesraCamera::GetCameraLookAt() const
{
    // The rotation, laid out column by column, with the translation as its
    // fourth column.
    Matrix lookAt = m_rotateMatrix;
    lookAt[12] = static_cast<double>(m_translationX);
    lookAt[13] = static_cast<double>(m_translationY);
    const Matrix inverse = lookAt.Inverse();
    return Vector(inverse[12], inverse[13], inverse[14]);
}

void CKesraCamera::UpdateWorldToViewMatrix()
{
    if (m_modified == 0)
    {
        return;
    }

    // T moves the rotation centre to the origin.
    const Matrix toCentre = Matrix::FromRows(
        1.0, 0.0, 0.0, static_cast<double>(m_negRotateCenter[0]),
        0.0, 1.0, 0.0, static_cast<double>(m_negRotateCenter[1]),
        0.0, 0.0, 1.0, static_cast<double>(m_negRotateCenter[2]),
        0.0, 0.0, 0.0, 1.0);

    // S: 1/scale is taken in float, then widened.
    const double inverseScale = static_cast<double>(1.0f / m_scale);
    const Matrix toPixels = Matrix::FromRows(inverseScale, 0.0, 0.0, 0.0,
                                             0.0, inverseScale, 0.0, 0.0,
                                             0.0, 0.0, inverseScale, 0.0,
                                             0.0, 0.0, 0.0, 1.0);

    // E: the rotation as F (its last row included), then the translation in
    // pixels, divided in float.
    Matrix rotateAndShift = m_rotateMatrix.Transposed();
    rotateAndShift(0, 3) = static_cast<double>(m_translationX / m_scale);
    rotateAndShift(1, 3) = static_cast<double>(m_translationY / m_scale);
    rotateAndShift(2, 3) = 0.0;

    // C moves the origin to the middle of the window.
    const Matrix toWindowCentre = Matrix::FromRows(
        1.0, 0.0, 0.0, static_cast<double>(static_cast<float>(m_windowWidth) * 0.5f),
        0.0, 1.0, 0.0, static_cast<double>(static_cast<float>(m_windowHeight) * 0.5f),
        0.0, 0.0, 1.0, 0.0,
        0.0, 0.0, 0.0, 1.0);

    m_worldToViewMatrix = toWindowCentre * ((rotateAndShift * toPixels) * toCentre);
    m_modified = 0;
}

const Matrix& CKesraCamera::GetWorldToViewMatrix()
{
    UpdateWorldToViewMatrix();
    return m_worldToViewMatrix;
}

void CKesraCamera::ProjectPointWorldToView(const Vector& in, Vector& out)
{
    UpdateWorldToViewMatrix();
    out = m_worldToViewMatrix.TransformPoint(in);
}

void CKesraCamera::ProjectPointWorldToView(const float* in, float* out)
{
    if (in == nullptr || out == nullptr)
    {
        return;
    }
    ProjectPointsWorldToView(in, 1, out);
}

void CKesraCamera::ProjectPointsWorldToView(const double* xyz, std::size_t count, double* out)
{
    if (xyz == nullptr || out == nullptr)
    {
        return;
    }
    UpdateWorldToViewMatrix();
    m_worldToViewMatrix.TransformPoints(xyz, count, out);
}

void CKesraCamera::ProjectPointsWorldToView(const float* xyz, std::size_t count, float* out)
{
    if (xyz == nullptr || out == nullptr)
    {
        return;
    }
    UpdateWorldToViewMatrix();
    m_worldToViewMatrix.TransformPoints(xyz, count, out);
}

// ---- Rotation angles and standard views -------------------------------------------

void CKesraCamera::SetRotationFromAngles(double a, double b, double c)
{
    m_rotateMatrix = ViewRotation::FromAngles(a, b, c);
    MarkModified();
}

void CKesraCamera::SetRotateAngle(double a, double b, double c)
{
    SetRotationFromAngles(a, b, c);
    NotifyRotateMatUpdate();
}

void CKesraCamera::GetRotateAngle(double& a, double& b, double& c) const
{
    GetEulerAngleFormRotMatrix(a, b, c);
}

void CKesraCamera::GetEulerAngleFormRotMatrix(double& a, double& b, double& c) const
{
    const Vector angles = ViewRotation::ToAngles(m_rotateMatrix);
    a = angles.x;
    b = angles.y;
    c = angles.z;
}

void CKesraCamera::StartSmoothRotation(const Vector& targetAngles)
{
    GetEulerAngleFormRotMatrix(m_smoothStartAngles.x, m_smoothStartAngles.y, m_smoothStartAngles.z);
    m_smoothTargetAngles = targetAngles;
    m_smoothCurrentFrame = 0;
    m_smoothRotating = true;
}

void CKesraCamera::SetStandardView(bool smooth, eStandardView view)
{
    m_smoothRotating = smooth;
    if (smooth)
    {
        StartSmoothRotation(ViewRotation::StandardViewAngles(view));
        MarkModified();
        return;
    }
    m_rotateMatrix = ViewRotation::StandardView(view);
    NotifyRotateMatUpdate();
    MarkModified();
}

void CKesraCamera::SetRotateMatrixToFrontView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Front);
}

void CKesraCamera::SetRotateMatrixToBackView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Back);
}

void CKesraCamera::SetRotateMatrixToLeftView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Left);
}

void CKesraCamera::SetRotateMatrixToRightView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Right);
}

void CKesraCamera::SetRotateMatrixToTopView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Top);
}

void CKesraCamera::SetRotateMatrixToBottomView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Bottom);
}

void CKesraCamera::SetRotateMatrixToISOView(bool smooth)
{
    SetStandardView(smooth, eStandardView::Iso);
}

// ---- Smooth rotation ------------------------------------------------------------------

void CKesraCamera::SetSmoothRotateFrames(int frames)
{
    // frames is a divisor in SmoothRotateImpl; it never becomes 0.
    if (frames > 0)
    {
        m_smoothRotateFrames = frames;
        m_smoothCurrentFrame = 0;
    }
}

bool CKesraCamera::SmoothRotateImpl()
{
    if (!m_smoothRotating)
    {
        return false;
    }
    ++m_smoothCurrentFrame;
    const double t = static_cast<double>(m_smoothCurrentFrame) /
                     static_cast<double>(m_smoothRotateFrames);
    // Linear in each angle, no wrapping; t = 1 reaches the target exactly.
    const Vector angles = m_smoothStartAngles * (1.0 - t) + m_smoothTargetAngles * t;
    SetRotationFromAngles(angles.x, angles.y, angles.z);
    if (m_smoothCurrentFrame == m_smoothRotateFrames)
    {
        m_smoothRotating = false;
    }
    NotifyRotateMatUpdate();
    return m_smoothRotating;
}

// ---- Six-sides inspection ------------------------------------------------------------

void CKesraCamera::RestartSixSides(bool smooth)
{
    m_sixSidesCurrentFrame = 0;
    m_sixSidesPauseCounter = 0;
    // The tour begins at the top view.
    if (smooth && m_sixSidesInspection)
    {
        StartSmoothRotation(ViewRotation::StandardViewAngles(eStandardView::Top));
    }
}

void CKesraCamera::SetSixSidesInspection(bool on, bool smooth)
{
    m_sixSidesInspection = on;
    if (on)
    {
        RestartSixSides(smooth);
    }
}

void CKesraCamera::SetSixSidesInspectionSideFrames(int framesPerSide, bool smooth)
{
    // Below 3 frames a side has no intermediate frame; above INT_MAX / 6 the
    // cycle length would not fit in an int.
    if (framesPerSide < 3 || framesPerSide > INT_MAX / 6)
    {
        return;
    }
    m_sixSidesCycleFrames = framesPerSide * 6;
    RestartSixSides(smooth);
}

int CKesraCamera::GetSixSidesInspectionSideFrames() const
{
    return m_sixSidesCycleFrames / 6;
}

void CKesraCamera::SetSixSidesInspectionSidePauses(int pauses, bool smooth)
{
    m_sixSidesSidePauses = std::max(pauses, 0);
    RestartSixSides(smooth);
}

int CKesraCamera::GetSixSidesInspectionTotalFrames() const
{
    // Taken in 64 bits: huge pause counts saturate instead of overflowing.
    const long long total = static_cast<long long>(m_sixSidesCycleFrames) +
                            static_cast<long long>(m_sixSidesSidePauses) * 6;
    return static_cast<int>(std::min<long long>(total, INT_MAX));
}

bool CKesraCamera::IsSixSidesInspectionCycleDone() const
{
    return m_sixSidesCurrentFrame == m_sixSidesCycleFrames - 1;
}

bool CKesraCamera::SixSidesInspectionImpl()
{
    if (!m_sixSidesInspection)
    {
        return false;
    }

    const double progress = static_cast<double>(m_sixSidesCurrentFrame) /
                            static_cast<double>(m_sixSidesCycleFrames) * 6.0;
    m_rotateMatrix = ViewRotation::SixSidesTour(progress, m_sixSidesPhaseAngles);
    MarkModified();

    // Advance: a frame that shows a side is held for the pause frames first.
    const int sideLength = m_sixSidesCycleFrames / 6;
    bool advance = true;
    if (m_sixSidesCurrentFrame % sideLength == 0)
    {
        if (m_sixSidesPauseCounter < m_sixSidesSidePauses)
        {
            ++m_sixSidesPauseCounter;
            advance = false;
        }
        else
        {
            m_sixSidesPauseCounter = 0;
        }
    }
    if (advance)
    {
        m_sixSidesCurrentFrame =
            (m_sixSidesCurrentFrame == m_sixSidesCycleFrames) ? 1 : m_sixSidesCurrentFrame + 1;
    }

    NotifyRotateMatUpdate();
    return true;
}

} // namespace KesraEngine
