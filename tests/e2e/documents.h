// Settings documents for the tests.
#ifndef TESTS_E2E_DOCUMENTS_H
#define TESTS_E2E_DOCUMENTS_H

#include <string>

// The document that asks for what the delivered factory settings hold.
std::string FactoryDocument();

// `document` with another content of the first element `name`.
std::string With(const std::string& document, const std::string& name, const std::string& content);

// The same for the first element `name` within the first element `block`.
std::string WithIn(const std::string& document, const std::string& block, const std::string& name,
                   const std::string& content);

// `document` without the first element `name`.
std::string Without(const std::string& document, const std::string& name);

// A static uplink for the element UpLinkConnection.
std::string StaticUplink(const std::string& address);

// `count` rules for the element AccessControl, which they switch on.
std::string AccessRules(int count);

// The result document with these values.
std::string ResultDocument(int code, const std::string& message, int wait_seconds);

#endif  // TESTS_E2E_DOCUMENTS_H
