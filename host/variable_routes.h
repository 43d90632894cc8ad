// The variables over HTTP: /vars and /actions.
#ifndef HOST_VARIABLE_ROUTES_H
#define HOST_VARIABLE_ROUTES_H

#include <string>

#include "reply.h"
#include "request_view.h"
#include "router.h"
#include "variables.h"

namespace kiohost {

class VariableRoutes {
 public:
  // `catalogue` is the file with the list of all variables.
  VariableRoutes(Variables* variables, std::string catalogue)
      : variables_(variables), catalogue_(std::move(catalogue)) {}

  // The routes use this object for as long as they are.
  void AddTo(Router* router);

 private:
  Reply ServeCatalogue();
  Reply Read(const RequestView& request);
  Reply Write(const RequestView& request);
  Reply Validate(const RequestView& request);
  Reply SetBatch(const RequestView& request);
  Reply RunAction(const RequestView& request);
  Reply Discard();

  // The reply to what the library said of a variable of that name.
  Reply AnswerFor(const std::string& name, const Variables::Answer& answer);

  Variables* variables_;
  std::string catalogue_;
};

}  // namespace kiohost

#endif  // HOST_VARIABLE_ROUTES_H
