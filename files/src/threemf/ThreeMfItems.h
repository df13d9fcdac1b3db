#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TeskPartFiles/Plates.h"
#include "xml/XmlReader.h"

namespace Tesk::files {

/// The start tags of the build items of a model part, in its order: those that readThreeMfModel()
/// reads as items. `name` goes into messages. Throws PartFileError if the text is not sound XML or
/// is in UTF-16.
std::vector<XmlTag> itemTags(std::string_view model, const std::string& name);

/// A well-formed start tag with another value of its attribute `transform`, or with this attribute
/// added.
std::string tagWithTransform(std::string_view tag, const PartTransform& transform);

}  // namespace Tesk::files
