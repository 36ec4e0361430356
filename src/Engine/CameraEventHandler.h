// IKesraCameraEventHandler: the observer of a camera's changes.
//
// The host or the drawing backend implements it and registers it with
// CKesraCamera::RegisterEventHandler. The camera calls it synchronously, in
// registration order, from inside the operation that made the change, and
// never owns it: a handler must be unregistered before it is destroyed, or
// outlive the camera. The matrix arguments are references to the camera's own
// rotation matrix field, valid during the call only.
#pragma once

#include "MathKit/Export.h"
#include "MathKit/Matrix4.h"

namespace KesraEngine
{

class KESRA_ENGINE_API IKesraCameraEventHandler
{
public:
    IKesraCameraEventHandler() = default;
    IKesraCameraEventHandler(const IKesraCameraEventHandler&) = default;
    IKesraCameraEventHandler& operator=(const IKesraCameraEventHandler&) = default;
    virtual ~IKesraCameraEventHandler() = default;

    // The rotation matrix changed (column by column, as CKesraCamera holds it).
    virtual void OnRotateMatUpdate(const KesraMathKit::TKesraMatrix4<double>& rotation) = 0;

    // The translation changed (model units along the view's x and y axes).
    virtual void OnTranslateUpdate(float translationX, float translationY) = 0;

    // The scale changed (model units per pixel).
    virtual void OnScaleUpdate(float scale) = 0;

    // The whole transform was replaced (ZoomAll, or a host's explicit
    // NotifyTransformUpdateInterface after silent changes).
    virtual void OnTransformUpdate(const KesraMathKit::TKesraMatrix4<double>& rotation,
                                   float translationX, float translationY, float scale) = 0;
};

} // namespace KesraEngine
