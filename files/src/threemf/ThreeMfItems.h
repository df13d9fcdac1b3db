#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TeskPartFiles/Plates.h"
#include "xml/XmlReader.h"

namespace Tesk::files {

/// The start tags of the build items of a model part, in its order: those that readThreeMfModel()
/// reads as items. `name` goes into messages. Throws PartFileError where the text is not sound XML,
/// or its encoding does not contain ASCII.
std::vector<XmlTag> itemTags(std::string_view model, const std::string& name);

/// An element's start tag, sound and in an encoding that contains ASCII, with another value of its
/// attribute `transform`, or with this attribute where it has none.
std::string tagWithTransform(std::string_view tag, const PartTransform& transform);

}  // namespace Tesk::files
