// CKesraCamera: the orthographic camera of one view.
//
// It holds the window size (pixels), a scale (model units per pixel), a
// translation of the picture (model units along the view's x and y axes), a
// rotation centre (model units) and a view rotation. From these it keeps the
// six bounds of the orthographic view volume and computes, on demand, the
// world-to-view matrix W that maps model coordinates to window pixels:
//
//     x = width/2  + ((F(p - centre)).x + translation x) / scale
//     y = height/2 + ((F(p - centre)).y + translation y) / scale
//     z =            (F(p - centre)).z / scale
//
// Conventions:
// - The rotation matrix holds the view rotation F column by column: element
//   4c + r is F(r, c), with view x to the right, y up and z toward the viewer
//   (TKesraViewRotation builds and reads it).
// - W is held row by row (element (r, c) is k = 4r + c); it is cached and
//   recomputed only while the modified flag is 1.
// - Angles are in degrees. The angles (a, b, c) describe F = Rx(a) Ry(b) Rz(c).
// - The view bounds are kept in float, computed from float(width) * 0.5f *
//   scale, so that they match the host's own float arithmetic to the last bit.
//
// Observers: see RegisterEventHandler. Every notifying setter has a silent
// twin with the suffix NoEventHandler.
//
// Animations: the backend's camera calls SmoothRotateImpl and
// SixSidesInspectionImpl once per redraw while IsSmoothRotate or
// IsSixSidesInspection is true; each call computes one frame.
//
// The class is the base of a drawing backend's camera: its constructor is
// protected and its twelve abstract operations are the backend's.
#pragma once

#include "Engine/CameraEventHandler.h"
#include "Engine/ObserverWalks.h"
#include "MathKit/Export.h"
#include "MathKit/Matrix4.h"
#include "MathKit/Vector3.h"
#include "MathKit/ViewRotation.h"

#include <cstddef>
#include <string>
#include <vector>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraCamera
{
public:
    using Matrix = KesraMathKit::TKesraMatrix4<double>;
    using Vector = KesraMathKit::TKesraVector3<double>;

    CKesraCamera(const CKesraCamera&) = default;
    // All or nothing: when the name or the handler list cannot be copied,
    // std::bad_alloc leaves this camera exactly as it was.
    CKesraCamera& operator=(const CKesraCamera& other);

    // ---- Observers -------------------------------------------------------
    //
    // The camera keeps non-owning pointers in registration order; a handler
    // must be unregistered before it is destroyed, or outlive the camera.
    // Copies of a camera notify the same handlers.
    //
    // A handler may register or unregister handlers, itself included, while it
    // is being notified. The rule for the notification under way: a handler
    // registered during it is first called by the next notification; a handler
    // unregistered during it is not called for the rest of it; every other
    // handler is still called exactly once, in order. Nested notifications
    // (a handler calling a notifying setter) follow the same rule.

    // Appends handler. False, with no change, for a null pointer, a handler
    // already registered, or when the list cannot grow.
    virtual bool RegisterEventHandler(IKesraCameraEventHandler* handler);

    // Removes handler; the ones after it keep their order. False for a null
    // pointer or a handler that is not registered.
    virtual bool UnregisterEventHandler(IKesraCameraEventHandler* handler);

    // ---- Backend operations (the library never calls them) ---------------

    // Sets the graphics interface's viewport to the window size.
    virtual void ApplyViewport() = 0;
    // Loads the orthographic view volume (GetParameters) as the projection.
    virtual void ApplyProjection() = 0;
    // Loads the world-to-view transform (rotation, translation, centre) as the
    // model-view transform.
    virtual void ApplyModelView() = 0;
    // Starts a mouse rotation at window pixel (x, y), y pointing up.
    virtual void BeginRotate(int x, int y) = 0;
    // Turns the camera for a mouse move to (x, y) since BeginRotate.
    virtual void Rotate(int x, int y) = 0;
    // Starts a mouse pan at window pixel (x, y).
    virtual void BeginPan(int x, int y) = 0;
    // Shifts the translation for a mouse move to (x, y) since BeginPan.
    virtual void Pan(int x, int y) = 0;
    // Starts a mouse-drag zoom at window pixel (x, y).
    virtual void BeginZoom(int x, int y) = 0;
    // Changes the scale for a mouse move to (x, y) since BeginZoom.
    virtual void Zoom(int x, int y) = 0;
    // Ends the rotation, pan or zoom under way.
    virtual void EndInteraction() = 0;
    // Zooms by wheel steps (positive: closer) about window pixel (x, y).
    virtual void WheelZoom(int x, int y, int steps) = 0;
    // Fits the window rectangle (x0, y0)-(x1, y1) into the whole window.
    virtual void ZoomToRectangle(int x0, int y0, int x1, int y1) = 0;

    // Virtual so that a host may delete a backend camera through this class;
    // declared last to keep the slots above in their order.
    virtual ~CKesraCamera();

    // ---- State and view transform ----------------------------------------

    int GetModified() const { return m_modified; }

    void SetName(std::string name);
    std::string GetName() const;

    // Stores the size and recomputes the view bounds. Notifies nobody.
    void SetWindowSize(int width, int height);
    void GetWindowSize(int& width, int& height) const;

    // Recomputes the view bounds from width, height and scale, then returns
    // them.
    void GetParameters(float& left, float& right, float& bottom, float& top,
                       float& nearBound, float& farBound);
    // The stored bounds and size, not recomputed.
    void GetParametersDirect(float& left, float& right, float& bottom, float& top,
                             float& nearBound, float& farBound, int& width, int& height) const;
    void GetWidthParametersDirect(float& left, float& right, int& width) const;
    void GetHeightParametersDirect(float& bottom, float& top, int& height) const;
    // Recomputes the view bounds; leaves the modified flag alone.
    void UpdateViewPortParameters();

    // Replaces rotation, translation and scale at once, silently; the rotation
    // centre is kept. Refused (no change) unless scale is finite and > 0.
    void SetTransformNoEventHandler(const Matrix& rotation, float translationX,
                                    float translationY, float scale);

    void SetRotateMatrix(const Matrix& rotation);
    void SetRotateMatrixNoEventHandler(const Matrix& rotation);
    const Matrix& GetRotateMatrix() const { return m_rotateMatrix; }

    // Refused (no change, no notification) unless scale is finite and > 0.
    void SetScale(float scale);
    // Refused (no change) unless scale is finite and > 0.
    void SetScaleNoEventHandler(float scale);
    float GetScale() const { return m_scale; }

    void SetTranslation(float x, float y);
    void SetTranslationNoEventHandler(float x, float y);
    void GetTranslation(float& x, float& y) const;

    // The point that the middle of the window shows when the translation is
    // zero. Notifies nobody.
    void SetRotateCenter(float x, float y, float z);
    void GetRotateCenter(float& x, float& y, float& z) const;

    // Fits the box [x0, x1] x [y0, y1] x [z0, z1] into the window in any
    // rotation: the diagonal spans the smaller window side, the box centre
    // becomes the rotation centre and the translation is reset; then
    // OnTransformUpdate is sent. Does nothing while the window has a zero side
    // or when a bound is not finite. A fit that gives no usable scale (a box
    // with a zero diagonal, a window with a negative side, a diagonal beyond
    // float) keeps the current scale and is otherwise done as usual.
    void ZoomAll(float x0, float x1, float y0, float y1, float z0, float z1);
    // The same with box[0] ... box[5] = x0, x1, y0, y1, z0, z1; a null box is
    // refused.
    void ZoomAll(const float* const box);

    // The model point shown in the middle of the window at view depth 0, as an
    // offset from the rotation centre.
    Vector GetCameraLookAt() const;

    // The world-to-view matrix, recomputed first if the camera is modified.
    const Matrix& GetWorldToViewMatrix();
    // Model point to window pixels (x, y) and view depth z, through W.
    void ProjectPointWorldToView(const Vector& in, Vector& out);
    // The same on three floats, computed in double; null arrays are refused.
    void ProjectPointWorldToView(const float* in, float* out);
    // count points at once: xyz holds x, y, z of each point in turn, out
    // receives three values per point, each exactly what the single
    // projection gives. W is refreshed once for the batch. out may be xyz
    // itself; null arrays are refused.
    void ProjectPointsWorldToView(const double* xyz, std::size_t count, double* out);
    // The same on floats, computed in double as the single float projection.
    void ProjectPointsWorldToView(const float* xyz, std::size_t count, float* out);

    // ---- Observers' notification -----------------------------------------

    // Sends OnTransformUpdate to every handler, so that a host can make several
    // silent changes and notify once.
    void NotifyTransformUpdateInterface();

    // ---- Rotation angles and standard views ------------------------------

    // Rotation = F of the angles (a, b, c) in degrees; notifies
    // OnRotateMatUpdate. Leaves a smooth rotation under way running.
    void SetRotateAngle(double a, double b, double c);
    // The angles of the current rotation: a and c in [-180, 180], b in
    // [-90, 90]; at b = +-90 the first angle takes up both and c is 0. A half
    // turn about y reads (0, 180, 0).
    void GetRotateAngle(double& a, double& b, double& c) const;

    // Each view setter with smooth false sets the view at once, notifies
    // OnRotateMatUpdate and stops a smooth rotation under way; with smooth true
    // it starts a smooth rotation toward the view and notifies nobody. The side
    // views show the model's z axis up.
    void SetRotateMatrixToFrontView(bool smooth);
    void SetRotateMatrixToBackView(bool smooth);
    void SetRotateMatrixToLeftView(bool smooth);
    void SetRotateMatrixToRightView(bool smooth);
    void SetRotateMatrixToTopView(bool smooth);
    void SetRotateMatrixToBottomView(bool smooth);
    void SetRotateMatrixToISOView(bool smooth);

    // ---- Smooth rotation ----------------------------------------------------

    // Steps of one smooth rotation; ignored unless frames > 0. Restarts a
    // rotation under way from its start angles.
    void SetSmoothRotateFrames(int frames);
    int GetSmoothRotateFrames() const { return m_smoothRotateFrames; }
    bool IsSmoothRotate() const { return m_smoothRotating; }

    // ---- Six-sides inspection -----------------------------------------------

    // Starts (frame 0, no pause spent) or stops the endless tour. With on and
    // smooth, a smooth rotation to the top view, where the tour begins, starts.
    void SetSixSidesInspection(bool on, bool smooth);
    bool IsSixSidesInspection() const { return m_sixSidesInspection; }
    // Ignored below 3 and above INT_MAX / 6 (the cycle would not fit in an
    // int); otherwise restarts the tour at frame 0.
    void SetSixSidesInspectionSideFrames(int framesPerSide, bool smooth);
    int GetSixSidesInspectionSideFrames() const;
    // Negative pauses become 0; restarts the tour at frame 0.
    void SetSixSidesInspectionSidePauses(int pauses, bool smooth);
    int GetSixSidesInspectionSidePauses() const { return m_sixSidesSidePauses; }
    // Calls of one full tour: moving frames plus the pauses at the six sides.
    int GetSixSidesInspectionTotalFrames() const;
    // True on the last moving frame before a tour closes.
    bool IsSixSidesInspectionCycleDone() const;

protected:
    // Window width and height in pixels; no argument is checked.
    CKesraCamera(int width, int height);

    // Recomputes W if the camera is modified, then clears the flag.
    void UpdateWorldToViewMatrix();

    void NotifyRotateMatUpdate();
    void NotifyTranslateUpdate();
    void NotifyScaleUpdate();
    void NotifyTransformUpdate();

    // The same as GetRotateAngle.
    void GetEulerAngleFormRotMatrix(double& a, double& b, double& c) const;

    // One frame of the smooth rotation: true while more frames follow, false
    // after the last one and when none is under way (then nothing changes).
    bool SmoothRotateImpl();

    // One frame of the six-sides tour: true while the tour is on, false (and
    // nothing changes) when it is off. Notifies on every call.
    bool SixSidesInspectionImpl();

    std::string m_name;
    int m_windowWidth;
    int m_windowHeight;
    int m_halfWidth;
    int m_halfHeight;
    float m_viewLeft;
    float m_viewRight;
    float m_viewBottom;
    float m_viewTop;
    float m_viewNear;
    float m_viewFar;
    Matrix m_rotateMatrix;
    float m_scale;
    float m_translationX;
    float m_translationY;
    float m_negRotateCenter[3];
    int m_modified;
    Matrix m_worldToViewMatrix;
    Vector m_smoothStartAngles;
    Vector m_smoothTargetAngles;
    int m_smoothRotateFrames;
    int m_smoothCurrentFrame;
    bool m_smoothRotating;
    int m_sixSidesCycleFrames;
    int m_sixSidesCurrentFrame;
    int m_sixSidesSidePauses;
    int m_sixSidesPauseCounter;
    double m_sixSidesPhaseAngles[6];
    bool m_sixSidesInspection;
    std::vector<IKesraCameraEventHandler*> m_eventHandlers;

private:
    void UpdateViewBounds();
    void MarkModified() { m_modified = 1; }
    void SetRotationFromAngles(double a, double b, double c);
    void SetStandardView(bool smooth, KesraMathKit::eStandardView view);
    void StartSmoothRotation(const Vector& targetAngles);
    void RestartSixSides(bool smooth);
    static bool IsUsableScale(float scale);

    // The notifications under way over m_eventHandlers (see
    // RegisterEventHandler); a copy starts with none.
    TKesraObserverWalks<IKesraCameraEventHandler> m_handlerWalks;
};

} // namespace KesraEngine
