#include "variables/actions.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "kioapp/platform.h"
#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/keywords.h"
#include "settings/survey.h"

namespace kio::variables {
namespace {

constexpr unsigned int kCommitDelaySeconds = 2;

unsigned int Done(const Request& request) {
  request.Answer("");
  return KIOAPP_VAR_DONE;
}

// Answers with the fault, which stands in the record.
unsigned int Faulty(const Request& request) {
  request.Answer(Record().setMsg);
  return static_cast<unsigned int>(Record().setResult);
}

unsigned int SurveySites(const Request& request) {
  request.Answer("");
  if (Record().upLink.hardwareTypeCode != settings::kHardwareWireless) {
    return KIOAPP_VAR_REFUSED;
  }
  KIO_LOG(platform::kLogDetail, "Trigger Site Survey ...\n");
  // A survey that was asked for before is started once more.
  settings::RequestSiteSurvey();
  exe_ExternalCall(KIOAPP_SYNC_SITE_SURVEY);
  return KIOAPP_VAR_DONE;
}

unsigned int VerifyAll(const Request& request) {
  if (Verify_RssXml() != 1) {
    return Faulty(request);
  }
  write_RssXml_ResultXml(KIOAPP_RESULT_APPLIED, "", 0);
  return Done(request);
}

unsigned int ApplyAll(const Request& request) {
  if (Apply_RssXmlToDevice() != 1) {
    return Faulty(request);
  }
  calc_RssExeFlag();
  return Done(request);
}

// What the host was doing may look at errno next.
void CommitOnAlarm(int /*signal*/) {
  const int before = errno;
  do_RssVar_Commit();
  errno = before;
}

// The commit may take down the link to the app. It runs by the alarm, so that the answer arrives
// first.
unsigned int CommitLater(const Request& request) {
  std::signal(SIGALRM, CommitOnAlarm);
  alarm(kCommitDelaySeconds);
  return Done(request);
}

unsigned int SetAll(const Request& request) {
  char message[KIOAPP_VAR_SIZE] = "";
  const int code = do_RssVar_Parser(request.value, '&', message, 0);
  if (code != KIOAPP_VAR_DONE) {
    request.Answer(message);
    return static_cast<unsigned int>(code);
  }
  return Done(request);
}

struct Action {
  TextView name;
  unsigned int (*run)(const Request& request);
};

constexpr Action kActions[] = {
    {"SiteSurvey", SurveySites},    {"VerifyAllRssVars", VerifyAll}, {"ApplyAllRssVars", ApplyAll},
    {"CommitRssVars", CommitLater}, {"SetRssVars", SetAll},
};

}  // namespace

unsigned int RunAction(TextView name, const Request& request) {
  for (const Action& action : kActions) {
    if (action.name == name) {
      return action.run(request);
    }
  }
  return KIOAPP_VAR_REFUSED;
}

}  // namespace kio::variables
