#include "Engine/TipManager.h"

#include <climits>
#include <cmath>
#include <cstddef>
#include <utility>

namespace KesraEngine
{

namespace
{

using TipList = std::vector<std::unique_ptr<CKesraTip>>;
using Color = CKesraTipManager::Color;

// Closer than this to the centre a tip has no direction to be pushed along.
constexpr double kRadialMinLength = 1e-20;

TipList CopyTips(const TipList& tips)
{
    TipList copy;
    copy.reserve(tips.size());
    for (const std::unique_ptr<CKesraTip>& tip : tips)
    {
        copy.push_back(std::make_unique<CKesraTip>(*tip));
    }
    return copy;
}

Color OpaqueColor(unsigned char red, unsigned char green, unsigned char blue)
{
    return Color(red, green, blue, 255);
}

void ReadColor(const Color& color, unsigned char& red, unsigned char& green, unsigned char& blue)
{
    red = color.red;
    green = color.green;
    blue = color.blue;
}

// The indexed operations' common frame: false for a missing tip, else the
// action is done and the answer is true.
template <typename Tip, typename Action>
bool ApplyToTip(Tip* tip, Action action)
{
    if (tip == nullptr)
    {
        return false;
    }
    action(*tip);
    return true;
}

// The label position of one tip at original coordinate p. False when the tip
// keeps its previous effect coordinate (radial layout, tip on the centre).
bool PlaceLabel(eTipLinkDirection direction, double offset, const double* centre,
                double distance, double* p)
{
    switch (direction)
    {
    case eTipLinkX:
        p[0] += offset;
        return true;
    case eTipLinkY:
        p[1] += offset;
        return true;
    case eTipLinkZ:
        p[2] += offset;
        return true;
    case eTipLinkRadial:
    {
        const double d[3] = {p[0] - centre[0], p[1] - centre[1], p[2] - centre[2]};
        const double length = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
        if (length < kRadialMinLength)
        {
            return false;
        }
        for (int i = 0; i < 3; ++i)
        {
            p[i] = centre[i] + d[i] / length * distance;
        }
        return true;
    }
    }
    // An unknown direction places the label on its point.
    return true;
}

} // namespace

// ---- Construction -----------------------------------------------------------

CKesraTipManager::CKesraTipManager()
    : m_tipList(),
      m_fontType(eTipFontNormal),
      m_textColor(OpaqueColor(0, 0, 0)),
      m_backgroundColor(OpaqueColor(255, 255, 225)),
      m_linkingLineColor(OpaqueColor(198, 198, 198))
{
}

CKesraTipManager::CKesraTipManager(const CKesraTipManager& other)
    : m_tipList(CopyTips(other.m_tipList)),
      m_fontType(other.m_fontType),
      m_textColor(other.m_textColor),
      m_backgroundColor(other.m_backgroundColor),
      m_linkingLineColor(other.m_linkingLineColor)
{
}

CKesraTipManager& CKesraTipManager::operator=(const CKesraTipManager& other)
{
    // Copy first: self-assignment and a failing copy both leave this intact.
    TipList copy = CopyTips(other.m_tipList);
    ClearTips();
    m_tipList = std::move(copy);
    m_fontType = other.m_fontType;
    m_textColor = other.m_textColor;
    m_backgroundColor = other.m_backgroundColor;
    m_linkingLineColor = other.m_linkingLineColor;
    return *this;
}

CKesraTipManager::~CKesraTipManager()
{
    ClearTips();
}

// ---- Tips -------------------------------------------------------------------

int CKesraTipManager::InsertTip(std::string text, const double* original, const double* effect)
{
    // The index of the new tip must fit the int result.
    if (m_tipList.size() >= static_cast<std::size_t>(INT_MAX))
    {
        return -1;
    }
    try
    {
        std::unique_ptr<CKesraTip> tip = std::make_unique<CKesraTip>();
        tip->Create(std::move(text), original, effect);
        // push_back either appends or leaves the list as it was; the record is
        // then freed by its unique_ptr.
        m_tipList.push_back(std::move(tip));
    }
    catch (...)
    {
        return -1;
    }
    return GetTipsNum() - 1;
}

bool CKesraTipManager::SetOrgCoord(int index, const double* coord)
{
    return ApplyToTip(FindTip(index), [coord](CKesraTip& tip) { tip.SetOriginalCoord(coord); });
}

bool CKesraTipManager::GetOrgCoord(int index, double* coord) const
{
    return ApplyToTip(GetTip(index),
                      [coord](const CKesraTip& tip) { tip.GetOriginalCoord(coord); });
}

bool CKesraTipManager::SetEffectCoord(int index, const double* coord)
{
    return ApplyToTip(FindTip(index), [coord](CKesraTip& tip) { tip.SetEffectCoord(coord); });
}

bool CKesraTipManager::GetEffectCoord(int index, double* coord) const
{
    return ApplyToTip(GetTip(index),
                      [coord](const CKesraTip& tip) { tip.GetEffectCoord(coord); });
}

bool CKesraTipManager::SetTipContext(int index, std::string text)
{
    try
    {
        // Read as a zero-terminated string, the text ends at its first zero
        // character; the record's assignment keeps the old text on failure.
        return ApplyToTip(FindTip(index),
                          [&text](CKesraTip& tip) { tip.SetContext(text.c_str()); });
    }
    catch (...)
    {
        return false;
    }
}

bool CKesraTipManager::RemoveTip(int index)
{
    if (GetTip(index) == nullptr)
    {
        return false;
    }
    m_tipList.erase(m_tipList.begin() + index);
    return true;
}

bool CKesraTipManager::ClearTips()
{
    for (std::unique_ptr<CKesraTip>& tip : m_tipList)
    {
        tip.reset();
    }
    m_tipList.clear();
    return true;
}

int CKesraTipManager::GetTipsNum() const
{
    // InsertTip keeps the count within int.
    return static_cast<int>(m_tipList.size());
}

const CKesraTip* CKesraTipManager::GetTip(int index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_tipList.size())
    {
        return nullptr;
    }
    return m_tipList[static_cast<std::size_t>(index)].get();
}

CKesraTip* CKesraTipManager::FindTip(int index)
{
    // Safe: the records themselves are never const; GetTip only hands them
    // out read-only.
    return const_cast<CKesraTip*>(std::as_const(*this).GetTip(index));
}

// ---- Drawing settings -------------------------------------------------------

void CKesraTipManager::SetTextColor(unsigned char red, unsigned char green, unsigned char blue)
{
    m_textColor = OpaqueColor(red, green, blue);
}

void CKesraTipManager::GetTextColor(unsigned char& red, unsigned char& green,
                                    unsigned char& blue) const
{
    ReadColor(m_textColor, red, green, blue);
}

void CKesraTipManager::SetBackgroundColor(unsigned char red, unsigned char green,
                                          unsigned char blue)
{
    m_backgroundColor = OpaqueColor(red, green, blue);
}

void CKesraTipManager::GetBackgroundColor(unsigned char& red, unsigned char& green,
                                          unsigned char& blue) const
{
    ReadColor(m_backgroundColor, red, green, blue);
}

void CKesraTipManager::SetLinkingLineColor(unsigned char red, unsigned char green,
                                           unsigned char blue)
{
    m_linkingLineColor = OpaqueColor(red, green, blue);
}

void CKesraTipManager::GetLinkingLineColor(unsigned char& red, unsigned char& green,
                                           unsigned char& blue) const
{
    ReadColor(m_linkingLineColor, red, green, blue);
}

// ---- Label layout -----------------------------------------------------------

void CKesraTipManager::UpdateEffect(eTipLinkDirection direction, double offset,
                                    const double* centre, double distance)
{
    for (const std::unique_ptr<CKesraTip>& tip : m_tipList)
    {
        double p[3];
        tip->GetOriginalCoord(p);
        if (PlaceLabel(direction, offset, centre, distance, p))
        {
            tip->SetEffectCoord(p);
        }
    }
}

} // namespace KesraEngine
