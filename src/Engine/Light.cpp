#include "Engine/Light.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace KesraEngine
{

namespace
{

// Stores value clamped to [low, high]; NaN lies in no range and leaves target
// as it was.
void StoreClamped(float value, float low, float high, float& target)
{
    if (!std::isnan(value))
    {
        target = std::clamp(value, low, high);
    }
}

} // namespace

CKesraLight::CKesraLight()
    : m_focalPoint(0.0, 0.0, -1.0),
      m_position(0.0, 0.0, 0.0),
      m_attenuationValues(1.0, 0.0, 0.0),
      m_intensity(1.0f),
      m_exponent(1.0f),
      m_coneAngle(180.0f),
      m_switch(1),
      m_lightType(0),
      m_backendSlot(-1),
      m_name("Default"),
      m_color(255, 255, 255, 0)
{
}

CKesraLight& CKesraLight::operator=(const CKesraLight& other)
{
    // The text is copied first and swapped in: std::bad_alloc from the copy
    // leaves this object as it was, and nothing after it can fail.
    std::string name(other.m_name);
    m_focalPoint = other.m_focalPoint;
    m_position = other.m_position;
    m_attenuationValues = other.m_attenuationValues;
    m_intensity = other.m_intensity;
    m_exponent = other.m_exponent;
    m_coneAngle = other.m_coneAngle;
    m_switch = other.m_switch;
    m_lightType = other.m_lightType;
    m_backendSlot = other.m_backendSlot;
    m_name.swap(name);
    m_color = other.m_color;
    return *this;
}

void CKesraLight::SetColor(Color color)
{
    m_color = color;
}

CKesraLight::Color CKesraLight::GetColor() const
{
    return m_color;
}

void CKesraLight::SetPosition(Vector position)
{
    m_position = position;
}

CKesraLight::Vector CKesraLight::GetPosition() const
{
    return m_position;
}

void CKesraLight::SetFocalPoint(Vector point)
{
    m_focalPoint = point;
}

CKesraLight::Vector CKesraLight::GetFocalPoint() const
{
    return m_focalPoint;
}

void CKesraLight::SetIntensity(float intensity)
{
    // Written so that NaN, which compares false, is ignored too.
    if (intensity >= 0.0f && intensity <= 1.0f)
    {
        m_intensity = intensity;
    }
}

float CKesraLight::GetIntensity() const
{
    return m_intensity;
}

void CKesraLight::SetSwitch(int on)
{
    m_switch = on != 0 ? 1 : 0;
}

int CKesraLight::GetSwitch() const
{
    return m_switch;
}

void CKesraLight::SetExponent(float exponent)
{
    StoreClamped(exponent, 0.0f, 128.0f, m_exponent);
}

float CKesraLight::GetExponent() const
{
    return m_exponent;
}

void CKesraLight::SetConeAngle(float angle)
{
    StoreClamped(angle, 0.0f, 180.0f, m_coneAngle);
}

float CKesraLight::GetConeAngle() const
{
    return m_coneAngle;
}

void CKesraLight::SetAttenuationValues(Vector values)
{
    m_attenuationValues = values;
}

void CKesraLight::SetAttenuationValues(float first, float second, float third)
{
    m_attenuationValues = Vector(static_cast<double>(first), static_cast<double>(second),
                                 static_cast<double>(third));
}

CKesraLight::Vector CKesraLight::GetAttenuationValues() const
{
    return m_attenuationValues;
}

void CKesraLight::SetLightType(int type)
{
    m_lightType = (type >= 0 && type <= 2) ? type : 0;
}

int CKesraLight::GetLightType() const
{
    return m_lightType;
}

void CKesraLight::SetName(std::string name)
{
    m_name = std::move(name);
}

std::string CKesraLight::GetName() const
{
    return m_name;
}

} // namespace KesraEngine
