// CKesraLight: the description of one light of a scene.
//
// It stores where the light is and where it points (model units), its colour
// (RGBA bytes), intensity, spot exponent, cone angle (degrees), distance
// attenuation, switch, type and name. The library only stores and checks these
// values; the drawing backend reads them.
//
// Setters either ignore or clamp a value outside their range, each as its
// comment says; the bounds are inclusive.
//
// The class is the base of a drawing backend's light: its constructor is
// protected and its four abstract operations are the backend's. The library
// calls none of them.
#pragma once

#include "MathKit/Export.h"
#include "MathKit/GenColor.h"
#include "MathKit/Vector3.h"

#include <string>

namespace KesraEngine
{

class KESRA_ENGINE_API CKesraLight
{
public:
    using Color = KesraMathKit::TKesraGenColor<unsigned char>;
    using Vector = KesraMathKit::TKesraVector3<double>;

    CKesraLight(const CKesraLight&) = default;
    // All or nothing: when a text cannot be copied, std::bad_alloc leaves
    // this object as it was.
    CKesraLight& operator=(const CKesraLight& other);
    ~CKesraLight() = default;

    // All four components, alpha included.
    virtual void SetColor(Color color);
    virtual Color GetColor() const;
    virtual void SetPosition(Vector position);
    virtual Vector GetPosition() const;
    // The point at which the light is aimed.
    virtual void SetFocalPoint(Vector point);
    virtual Vector GetFocalPoint() const;

    // Ignored (the intensity stays) unless 0 <= intensity <= 1.
    virtual void SetIntensity(float intensity);
    virtual float GetIntensity() const;

    // Non-zero switches the light on and is stored as 1.
    virtual void SetSwitch(int on);
    virtual int GetSwitch() const;

    // Spot exponent, clamped to [0, 128]; NaN is ignored.
    virtual void SetExponent(float exponent);
    virtual float GetExponent() const;

    // Spot cone angle in degrees, clamped to [0, 180]; NaN is ignored.
    virtual void SetConeAngle(float angle);
    virtual float GetConeAngle() const;

    // The three attenuation values in the order the backend's distance
    // attenuation takes them; stored as given.
    virtual void SetAttenuationValues(Vector values);
    // The same, each float widened to double.
    virtual void SetAttenuationValues(float first, float second, float third);
    virtual Vector GetAttenuationValues() const;

    // 0, 1 or 2, interpreted by the backend; any other value stores 0.
    virtual void SetLightType(int type);
    virtual int GetLightType() const;

    // ---- Backend operations ------------------------------------------------

    // Hands every stored value to the graphics interface's light in the
    // backend slot.
    virtual void Apply() = 0;
    // Enables the light in the graphics interface.
    virtual void TurnOn() = 0;
    // Disables the light in the graphics interface.
    virtual void TurnOff() = 0;

    virtual void SetName(std::string name);
    virtual std::string GetName() const;

    // Draws a marker at the light's position, in its colour, for the host's
    // light editor.
    virtual void DrawSymbol() = 0;

protected:
    CKesraLight();

    Vector m_focalPoint;
    Vector m_position;
    Vector m_attenuationValues;
    float m_intensity;
    float m_exponent;
    float m_coneAngle;
    int m_switch;
    int m_lightType;
    // The derived class's own value (the graphics interface's light number);
    // this class only starts it at -1 and copies it.
    int m_backendSlot;
    std::string m_name;
    Color m_color;
};

} // namespace KesraEngine
