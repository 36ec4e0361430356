#include "Engine/Camera.h"

#include "MathKit/Math.h"

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

// The isometric view's constant is six decimals of sqrt(1/2), as hosts have
// always stored it; the exact root would move every projected pixel slightly.
constexpr double kIso = 0.707106;

// The standard views' rotation matrices, column by column (element 4c + r is
// F(r, c)). The side views show the model's z axis up.
constexpr Matrix kFrontView(1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1);
constexpr Matrix kBackView(-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1);
constexpr Matrix kLeftView(0, 0, -1, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1);
constexpr Matrix kRightView(0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1);
constexpr Matrix kTopView(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
constexpr Matrix kBottomView(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1);
constexpr Matrix kIsoView(kIso, -0.5, 0.5, 0, kIso, 0.5, -0.5, 0, 0, kIso, kIso, 0, 0, 0, 0, 1);

// Turns of the six phases of the six-sides tour: phases 0, 1, 3 and 4 about
// the screen's vertical axis, phases 2 and 5 about its horizontal axis.
constexpr double kSixSidesAxes[6][3] = {
    {0.0, 1.0, 0.0}, {0.0, 1.0, 0.0}, {1.0, 0.0, 0.0},
    {0.0, 1.0, 0.0}, {0.0, 1.0, 0.0}, {1.0, 0.0, 0.0},
};

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
    // m_walkAnchor stays: it belongs to this object's own call stack.
    return *this;
}

// ---- Observers ----------------------------------------------------------------

bool CKesraCamera::RegisterEventHandler(IKesraCameraEventHandler* handler)
{
    if (handler == nullptr)
    {
        return false;
    }
    if (std::find(m_eventHandlers.begin(), m_eventHandlers.end(), handler) != m_eventHandlers.end())
    {
        return false;
    }
    try
    {
        m_eventHandlers.push_back(handler);
    }
    catch (...)
    {
        // push_back leaves the list as it was when it cannot grow.
        return false;
    }
    return true;
}

bool CKesraCamera::UnregisterEventHandler(IKesraCameraEventHandler* handler)
{
    if (handler == nullptr)
    {
        return false;
    }
    const auto found = std::find(m_eventHandlers.begin(), m_eventHandlers.end(), handler);
    if (found == m_eventHandlers.end())
    {
        return false;
    }
    const std::size_t index = static_cast<std::size_t>(found - m_eventHandlers.begin());
    m_eventHandlers.erase(found);

    // Keep every walk under way on the handlers it has not reached yet: the
    // entries after the removed one have moved up one place.
    for (NotificationWalk* walk = m_walkAnchor.innermost; walk != nullptr; walk = walk->outer)
    {
        if (index < walk->next)
        {
            --walk->next;
        }
        if (index < walk->end)
        {
            --walk->end;
        }
    }
    return true;
}

template <typename Call>
void CKesraCamera::ForEachHandler(Call call)
{
    NotificationWalk walk{0, m_eventHandlers.size(), m_walkAnchor.innermost};
    m_walkAnchor.innermost = &walk;

    // Unlinks the walk however the loop ends, a handler's exception included.
    struct Unlink
    {
        WalkAnchor& anchor;
        NotificationWalk& walk;
        ~Unlink() { anchor.innermost = walk.outer; }
    } unlink{m_walkAnchor, walk};

    // The list may change under the walk (see RegisterEventHandler); the size
    // check also covers a handler that assigns another camera to this one.
    while (walk.next < walk.end && walk.next < m_eventHandlers.size())
    {
        IKesraCameraEventHandler* const handler = m_eventHandlers[walk.next];
        ++walk.next;
        call(*handler);
    }
}

// Arguments are read from the fields anew for every handler: a handler that
// changes the camera silently changes what the handlers after it receive.
void CKesraCamera::NotifyRotateMatUpdate()
{
    ForEachHandler([this](IKesraCameraEventHandler& handler) {
        handler.OnRotateMatUpdate(m_rotateMatrix);
    });
}

void CKesraCamera::NotifyTranslateUpdate()
{
    ForEachHandler([this](IKesraCameraEventHandler& handler) {
        handler.OnTranslateUpdate(m_translationX, m_translationY);
    });
}

void CKesraCamera::NotifyScaleUpdate()
{
    ForEachHandler([this](IKesraCameraEventHandler& handler) {
        handler.OnScaleUpdate(m_scale);
    });
}

void CKesraCamera::NotifyTransformUpdate()
{
    ForEachHandler([this](IKesraCameraEventHandler& handler) {
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
    left = m_viewLeft;
    right = m_viewRight;
    bottom = m_viewBottom;
    top = m_viewTop;
    nearBound = m_viewNear;
    farBound = m_viewFar;
}

void CKesraCamera::GetParametersDirect(float& left, float& right, float& bottom, float& top,
                                       float& nearBound, float& farBound, int& width,
                                       int& height) const
{
    left = m_viewLeft;
    right = m_viewRight;
    bottom = m_viewBottom;
    top = m_viewTop;
    nearBound = m_viewNear;
    farBound = m_viewFar;
    width = m_windowWidth;
    height = m_windowHeight;
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
    const float dx = x1 - x0;
    const float dy = y1 - y0;
    const float dz = z1 - z0;
    const float sum = dx * dx + dy * dy + dz * dz;
    const float diagonal = static_cast<float>(std::sqrt(static_cast<double>(sum)));
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
    Matrix toCentre = Matrix::IDENTITY;
    toCentre(0, 3) = static_cast<double>(m_negRotateCenter[0]);
    toCentre(1, 3) = static_cast<double>(m_negRotateCenter[1]);
    toCentre(2, 3) = static_cast<double>(m_negRotateCenter[2]);

    // S: 1/scale is taken in float, then widened.
    Matrix toPixels = Matrix::IDENTITY;
    const double inverseScale = static_cast<double>(1.0f / m_scale);
    toPixels(0, 0) = inverseScale;
    toPixels(1, 1) = inverseScale;
    toPixels(2, 2) = inverseScale;

    // E: the rotation read row by row (F), then the translation in pixels,
    // divided in float.
    Matrix rotateAndShift;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            rotateAndShift(r, c) = m_rotateMatrix[4 * c + r];
        }
    }
    rotateAndShift(0, 3) = static_cast<double>(m_translationX / m_scale);
    rotateAndShift(1, 3) = static_cast<double>(m_translationY / m_scale);
    rotateAndShift(2, 3) = 0.0;

    // C moves the origin to the middle of the window.
    Matrix toWindowCentre = Matrix::IDENTITY;
    toWindowCentre(0, 3) = static_cast<double>(static_cast<float>(m_windowWidth) * 0.5f);
    toWindowCentre(1, 3) = static_cast<double>(static_cast<float>(m_windowHeight) * 0.5f);
    toWindowCentre(2, 3) = 0.0;

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
    const Vector point(static_cast<double>(in[0]), static_cast<double>(in[1]),
                       static_cast<double>(in[2]));
    Vector projected;
    ProjectPointWorldToView(point, projected);
    out[0] = static_cast<float>(projected.x);
    out[1] = static_cast<float>(projected.y);
    out[2] = static_cast<float>(projected.z);
}

namespace
{

// Projects count points through w, a local copy, so that the stores to out
// need not reload it. Each point is read whole before it is written, which
// lets out be in itself.
template <typename Real>
void ProjectThrough(const KesraMathKit::TKesraMatrix4<double> w, const Real* in,
                    std::size_t count, Real* out)
{
    for (std::size_t k = 0; k < 3 * count; k += 3)
    {
        const KesraMathKit::TKesraVector3<double> point(
            static_cast<double>(in[k]), static_cast<double>(in[k + 1]),
            static_cast<double>(in[k + 2]));
        const KesraMathKit::TKesraVector3<double> projected = w.TransformPoint(point);
        out[k] = static_cast<Real>(projected.x);
        out[k + 1] = static_cast<Real>(projected.y);
        out[k + 2] = static_cast<Real>(projected.z);
    }
}

} // namespace

void CKesraCamera::ProjectPointsWorldToView(const double* xyz, std::size_t count, double* out)
{
    if (xyz == nullptr || out == nullptr)
    {
        return;
    }
    UpdateWorldToViewMatrix();
    ProjectThrough(m_worldToViewMatrix, xyz, count, out);
}

void CKesraCamera::ProjectPointsWorldToView(const float* xyz, std::size_t count, float* out)
{
    if (xyz == nullptr || out == nullptr)
    {
        return;
    }
    UpdateWorldToViewMatrix();
    ProjectThrough(m_worldToViewMatrix, xyz, count, out);
}

// ---- Rotation angles and standard views -------------------------------------------

void CKesraCamera::SetRotationFromAngles(double a, double b, double c)
{
    Matrix aboutX;
    Matrix aboutY;
    Matrix aboutZ;
    aboutX.MakeRotation(a, 1.0, 0.0, 0.0);
    aboutY.MakeRotation(b, 0.0, 1.0, 0.0);
    aboutZ.MakeRotation(c, 0.0, 0.0, 1.0);
    m_rotateMatrix = (aboutZ * aboutY) * aboutX;
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
    const Matrix& m = m_rotateMatrix;
    const double radToDeg = KesraMathKit::TKesraMath<double>::RAD_TO_DEG;
    const double v = -m[8];
    const double x = std::sqrt(1.0 - v * v);
    b = -(std::atan2(v, x) * radToDeg);

    if (v != 1.0 && v != -1.0)
    {
        a = -(std::atan2(m[9] / x, m[10] / x) * radToDeg);
        c = -(std::atan2(m[4] / x, m[0] / x) * radToDeg);
        // (-180, 0, -180) and (0, 180, 0) are the same half turn about y;
        // prefer the latter so that the bottom view reads back as its angles.
        if (std::abs(b) < 1e-12 && std::abs(a + 180.0) < 1e-12 && std::abs(c + 180.0) < 1e-12)
        {
            a = 0.0;
            b = 180.0;
            c = 0.0;
        }
    }
    else
    {
        // Gimbal lock: only a +- c is defined; the first angle takes it up.
        a = -(std::atan2(-m[6], m[5]) * radToDeg);
        c = -(std::atan2(0.0, 1.0) * radToDeg);
    }
}

void CKesraCamera::StartSmoothRotation(const Vector& targetAngles)
{
    GetEulerAngleFormRotMatrix(m_smoothStartAngles.x, m_smoothStartAngles.y, m_smoothStartAngles.z);
    m_smoothTargetAngles = targetAngles;
    m_smoothCurrentFrame = 0;
    m_smoothRotating = true;
}

void CKesraCamera::SetStandardView(bool smooth, const Matrix& view, const Vector& angles)
{
    m_smoothRotating = smooth;
    if (smooth)
    {
        StartSmoothRotation(angles);
        MarkModified();
        return;
    }
    m_rotateMatrix = view;
    NotifyRotateMatUpdate();
    MarkModified();
}

void CKesraCamera::SetRotateMatrixToFrontView(bool smooth)
{
    SetStandardView(smooth, kFrontView, Vector(-90.0, 0.0, 0.0));
}

void CKesraCamera::SetRotateMatrixToBackView(bool smooth)
{
    SetStandardView(smooth, kBackView, Vector(-90.0, 0.0, -180.0));
}

void CKesraCamera::SetRotateMatrixToLeftView(bool smooth)
{
    SetStandardView(smooth, kLeftView, Vector(-90.0, 0.0, 90.0));
}

void CKesraCamera::SetRotateMatrixToRightView(bool smooth)
{
    SetStandardView(smooth, kRightView, Vector(-90.0, 0.0, -90.0));
}

void CKesraCamera::SetRotateMatrixToTopView(bool smooth)
{
    SetStandardView(smooth, kTopView, Vector(0.0, 0.0, 0.0));
}

void CKesraCamera::SetRotateMatrixToBottomView(bool smooth)
{
    SetStandardView(smooth, kBottomView, Vector(0.0, 180.0, 0.0));
}

void CKesraCamera::SetRotateMatrixToISOView(bool smooth)
{
    SetStandardView(smooth, kIsoView, Vector(-45.0, 0.0, -45.0));
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
    const double a = (1.0 - t) * m_smoothStartAngles.x + t * m_smoothTargetAngles.x;
    const double b = (1.0 - t) * m_smoothStartAngles.y + t * m_smoothTargetAngles.y;
    const double c = (1.0 - t) * m_smoothStartAngles.z + t * m_smoothTargetAngles.z;
    SetRotationFromAngles(a, b, c);
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
    // The tour begins at the top view, whose angles are (0, 0, 0).
    if (smooth && m_sixSidesInspection)
    {
        StartSmoothRotation(Vector(0.0, 0.0, 0.0));
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
    Matrix rotation = Matrix::IDENTITY;
    for (int i = 0; i < 6; ++i)
    {
        double angle = (progress - static_cast<double>(i)) * 90.0;
        if (angle < 0.0)
        {
            angle = 0.0;
        }
        if (angle > 90.0)
        {
            angle = 90.0;
        }
        m_sixSidesPhaseAngles[i] = angle;

        Matrix phase;
        phase.MakeRotation(angle, kSixSidesAxes[i][0], kSixSidesAxes[i][1], kSixSidesAxes[i][2]);
        rotation = (i == 0) ? phase : rotation * phase;
    }
    m_rotateMatrix = rotation;
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
