#include "trialhost/ITrialView.h"

namespace
{
class CHeadlessView : public ITrialView
{
public:
    void Refresh() override {}
    bool SavePicture(const WString&) override { return false; }
    bool RunUntilClosed() override { return false; }
};
} // namespace

std::unique_ptr<ITrialView> CreateTrialView(CTrialHost&)
{
    return std::make_unique<CHeadlessView>();
}
