// The factories through which the library's hosts make a backend's tubes and
// tip managers. A factory owns what it makes and destroys it with itself: the
// bases' destructors are not virtual, so only code that knows the concrete
// type may delete them. A list keeps each object at its address while more
// are made.
#pragma once

#include "Engine/StreamlineFactory.h"
#include "Engine/TipMagFactory.h"

#include <list>

namespace KesraBackend
{

template <typename Streamline>
class TStreamlineFactory : public KesraEngine::IKesraStreamlineFactory
{
public:
    // A new tube, not yet created.
    Streamline* MakeStreamline() override { return &m_made.emplace_back(); }

private:
    std::list<Streamline> m_made;
};

template <typename TipManager>
class TTipManagerFactory : public KesraEngine::IKesraTipMagFactory
{
public:
    // A new manager with the default settings and no tips.
    TipManager* CreateTipManager() override { return &m_made.emplace_back(); }

private:
    std::list<TipManager> m_made;
};

} // namespace KesraBackend
