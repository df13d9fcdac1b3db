#pragma once

#include "xml/XmlReader.h"

namespace Tesk::files {

/// The namespace of attributes that name another model part of the package.
inline constexpr std::string_view kProductionSpace =
    "http://schemas.microsoft.com/3dmanufacturing/production/2015/06";

/// Throws PartFileError if the attribute `requiredextensions` of a model's root element names an
/// extension of 3MF without which shapes may come out wrong: any that is not known to leave shapes
/// alone.
void refuseUnknownExtensions(const XmlElement& model);

}  // namespace Tesk::files
