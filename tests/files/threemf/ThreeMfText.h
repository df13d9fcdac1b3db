#pragma once

#include <string>
#include <vector>

#include "TeskPartFiles/PartFiles.h"
#include "tools/ZipMaker.h"

/// Packages of 3MF for tests, as text.

inline constexpr const char* kRoot = "3D/3dmodel.model";
inline constexpr const char* kProduction =
    "xmlns:p=\"http://schemas.microsoft.com/3dmanufacturing/production/2015/06\"";

/// The package's relationships: the root model is this.
ZipFile relationshipsTo(const std::string& target);

/// A tetrahedron with legs of this length along the axes.
std::string mesh(double leg);

std::string object(int id, const std::string& content, const std::string& attributes = "");
std::string components(const std::string& content);
std::string component(int id, const std::string& attributes = "");
std::string item(int id, const std::string& attributes = "");

/// Attributes of components and items.
std::string movedBy(double x);
std::string in(const std::string& path);

/// A model part; `attributes` are the root element's.
ZipFile model(const std::string& name, const std::string& objects, const std::string& items,
              const std::string& attributes = kProduction);

/// What a package of these parts, with `root` as its model, builds. Vertices are not merged.
Tesk::PartFile contentOf(std::vector<ZipFile> files, const std::string& root = kRoot);

/// What is said against it; empty where it is sound.
std::string complaint(const std::vector<ZipFile>& files, const std::string& root = kRoot);

/// The end of a mesh along x.
float endOf(const Tesk::PartFile& content);
