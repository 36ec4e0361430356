// CKesraTipManager: the owner of a list of annotation tips and of the
// settings with which a drawing backend draws them.
//
// Tips are addressed by index, their zero-based position in the list; removing
// a tip moves every later one down by one, so indices are positions and not
// lasting names. The manager owns every record: InsertTip makes it, RemoveTip,
// ClearTips and the destructor delete it. Copying a manager copies each record,
// so two managers never share one.
//
// Coordinates are three doubles x, y, z in model units, passed as arrays of at
// least three elements; the pointers are not checked. Texts are kept up to
// their first zero character.
//
// The font type and the three colours are only stored for the backend; the
// library never reads them. Colours are bytes red, green, blue; alpha is
// always 255.
//
// The class is the base of a drawing backend's tip drawer: its constructor is
// protected and its one abstract operation is the backend's. The destructor is
// not virtual, so a backend manager is destroyed through its own type.
#pragma once

#include "Engine/Tip.h"
#include "MathKit/Export.h"
#include "MathKit/GenColor.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace KesraEngine
{

class CKesraRenderer;

// How UpdateEffect places the labels.
enum eTipLinkDirection : std::int32_t
{
    eTipLinkX = 0,      // the original coordinate moved along x by the offset
    eTipLinkY = 1,      // the original coordinate moved along y by the offset
    eTipLinkZ = 2,      // the original coordinate moved along z by the offset
    eTipLinkRadial = 3  // on the ray from a centre through the original
                        // coordinate, at a distance from the centre
};

// Size class of the tip texts; the backend maps it to a point size.
enum eTipFontType : std::int32_t
{
    eTipFontSmall = 0,
    eTipFontMedium = 1,
    eTipFontNormal = 2, // the default
    eTipFontLarge = 3,
    eTipFontHuge = 4
};

class KESRA_ENGINE_API CKesraTipManager
{
public:
    using Color = KesraMathKit::TKesraGenColor<unsigned char>;

    // Copies the settings and each tip record.
    CKesraTipManager(const CKesraTipManager& other);
    // Copies the settings and each tip record; the target's own records are
    // deleted once the copies exist, so a failed copy leaves the target alone.
    CKesraTipManager& operator=(const CKesraTipManager& other);
    // Deletes the remaining tips, in list order.
    ~CKesraTipManager();

    // ---- Backend operation (the library never calls it) ------------------

    // Draws every tip into the frame that renderer is drawing, seen through
    // renderer's camera: the text at its effect coordinate over the
    // background colour in the font type, and a line in the linking line
    // colour from the label to the original coordinate.
    virtual void DrawTips(CKesraRenderer& renderer) = 0;

    // ---- Tips ---------------------------------------------------------------

    // Appends a tip and returns its index (the new count minus one). -1, with
    // the list as it was, when anything fails inside, exhausted memory
    // included, or when the count would outgrow an int.
    int InsertTip(std::string text, const double* original, const double* effect);

    // The indexed operations return false, with no change, unless
    // 0 <= index < GetTipsNum().
    bool SetOrgCoord(int index, const double* coord);
    bool GetOrgCoord(int index, double* coord) const;
    // The effect coordinate moves only here, in InsertTip and in UpdateEffect;
    // SetOrgCoord leaves it where it was.
    bool SetEffectCoord(int index, const double* coord);
    bool GetEffectCoord(int index, double* coord) const;
    // Also false, with the old text kept, when anything fails inside,
    // exhausted memory included.
    bool SetTipContext(int index, std::string text);
    // The tips behind the removed one move one place forward, in order.
    bool RemoveTip(int index);

    // Deletes every tip in list order. Always true, also for an empty list.
    bool ClearTips();
    int GetTipsNum() const;

    // ---- Drawing settings (stored unchecked, for the backend) -------------

    void SetTipFontType(eTipFontType fontType) { m_fontType = fontType; }
    eTipFontType GetTipFontType() const { return m_fontType; }

    void SetTextColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetTextColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;
    void SetBackgroundColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetBackgroundColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;
    void SetLinkingLineColor(unsigned char red, unsigned char green, unsigned char blue);
    void GetLinkingLineColor(unsigned char& red, unsigned char& green, unsigned char& blue) const;

    // ---- Label layout -------------------------------------------------------

    // Sets every tip's effect coordinate from its original coordinate:
    // eTipLinkX, eTipLinkY, eTipLinkZ add offset to that coordinate;
    // eTipLinkRadial puts the label on the ray from centre through the tip at
    // distance from centre, and skips (keeps the effect coordinate of) a tip
    // closer than 1e-20 to centre; any other direction copies the original
    // coordinate. centre is read only for eTipLinkRadial. Negative offsets and
    // distances are used as given.
    void UpdateEffect(eTipLinkDirection direction, double offset, const double* centre,
                      double distance);

protected:
    // Default font type 2, text black, background (255, 255, 225), linking
    // line (198, 198, 198), all opaque; no tips.
    CKesraTipManager();

    // The record at index, or null unless 0 <= index < GetTipsNum(); the
    // backend reads the texts through it.
    const CKesraTip* GetTip(int index) const;

    std::vector<std::unique_ptr<CKesraTip>> m_tipList;
    eTipFontType m_fontType;
    Color m_textColor;
    Color m_backgroundColor;
    Color m_linkingLineColor;

private:
    // GetTip for the operations that change a record; a const manager hands
    // out its records read-only.
    CKesraTip* FindTip(int index);
};

} // namespace KesraEngine
