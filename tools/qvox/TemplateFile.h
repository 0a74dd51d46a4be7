// A template file of either kind, opened for the qvox commands that take one: the kind is read
// from the file, and what keeps it from being a template is told in words.
#pragma once

#include <memory>
#include <string>

#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox::tool {

enum class Opened { Ok, Unreadable, Malformed, NotATemplate, UnknownKind };

struct OpenedTemplate {
    Opened result = Opened::Unreadable;
    std::unique_ptr<CQVOXConditionalOrdersTemplate> item;  // loaded when result is Ok
    CString type;                                          // the Type the file gives
};

// The template at path, loaded into an object of the kind its Type names.
OpenedTemplate Open(const std::string& path);

// The reason a file couldn't be opened as a template, for a message after "<file>: ".
std::string Why(const OpenedTemplate& opened);

}  // namespace qvox::tool
