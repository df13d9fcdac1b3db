#pragma once

#include "xml/XmlReader.h"

namespace Tesk::files {

/// The namespace of attributes that name another model part of the package.
inline constexpr std::string_view kProductionSpace =
    "http://schemas.microsoft.com/3dmanufacturing/production/2015/06";

/// Throws PartFileError where a model's root element asks for an extension of 3MF, in its attribute
/// `requiredextensions`, without which its shapes may come out wrong: any but those that are known
/// to leave shapes alone.
void refuseUnknownExtensions(const XmlElement& model);

}  // namespace Tesk::files
