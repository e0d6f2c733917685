#include "trialhost/ITrialView.h"

namespace
{
class CHeadlessView : public ITrialView
{
public:
    void Refresh() override {}
    void AddPlugIn(const WString&) override {}
    bool SavePicture(const WString&) override { return false; }
    bool SavePictures(const WString&) override { return false; }
    bool RunUntilClosed() override { return false; }
};
} // namespace

std::unique_ptr<ITrialView> CreateTrialView(CTrialSession&, CCallLog&, const WString&)
{
    return std::make_unique<CHeadlessView>();
}
