#include "settings/survey.h"

#include "platform/store.h"
#include "settings/record.h"

namespace kio::settings {

bool RequestSiteSurvey() {
  SectionPath nodes(SectionId::kSite);
  const char* const survey = nodes.Node(RowOf(kSiteFields, "Survey").node);
  if (platform::ReadStoreInt(survey) == 1) {
    return false;
  }
  platform::WriteStoreInt(survey, 1);
  platform::StorePath cloned(kClonedSiteNode);
  if (!platform::StoreText(cloned.Node(RowOf(kSiteFields, "WirelessType").node)).empty()) {
    platform::DeleteStoreNode(kClonedSiteNode);
  }
  return true;
}

}  // namespace kio::settings
