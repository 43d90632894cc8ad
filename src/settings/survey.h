// Asking for a site survey.
#ifndef KIO_SETTINGS_SURVEY_H
#define KIO_SETTINGS_SURVEY_H

namespace kio::settings {

// Asks for a site survey by its store node and forgets the cloned network. Returns false if one was
// asked for already; nothing is written then.
bool RequestSiteSurvey();

}  // namespace kio::settings

#endif
