#pragma once

#include <string>
#include <vector>

#include "TriangleMesh.h"
#include "reports/ReportValues.h"

namespace App {

/// One part of a page, with what was found for it.
struct PageObject {
    std::string name;        ///< may be empty; any text, which the page shows as text
    std::string partNumber;  ///< may be empty
    int copies = 1;          ///< how many stand on the plate
    std::string reason;      ///< one sentence: why the chosen pose
    /// As `--json` prints it: input (triangles, vertices, sizeMm, warnings), chosenRank,
    /// noneStands, passedOver, asItLies and poses, each with its measures, cost, up, turn and
    /// matrix.
    Json result;
    const TriangleMesh* mesh = nullptr;  ///< in millimetres, not empty; as the matrices take it
};

struct PageInput {
    std::string title;  ///< the file's name
    Json settings;      ///< as `--json` prints them, with overhangAngleDeg
    Json warnings;  ///< about the plate and not about one part, as `--json` prints them; an array
    std::vector<PageObject> objects;
};

/// A page that shows build poses: HTML with all that it needs in it, which asks nothing of any
/// server.
///
/// Its data stand in `<script type="application/json" id="data">`: the members of PageInput, with
/// `schema` "tesk-orient/page/1", the versions of the program and of three.js, the filament that
/// masses are reckoned with, and each part's `mesh` as pageMeshOf() gives it. All parts together
/// have at most about 200,000 triangles there; parts that have more are thinned out.
///
/// The same input gives the same bytes. A content security policy allows the page's own scripts and
/// style by their hashes and nothing else.
std::string pageOf(const PageInput& input);

}  // namespace App
