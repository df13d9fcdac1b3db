#include "threemf/PlatePackage.h"

namespace {

constexpr const char* kContentTypes = R"(<?xml version="1.0" encoding="UTF-8"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
 <Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
 <Default Extension="model" ContentType="application/vnd.ms-package.3dmanufacturing-3dmodel+xml"/>
 <Default Extension="png" ContentType="image/png"/>
 <Default Extension="config" ContentType="text/xml"/>
</Types>)";

constexpr const char* kRelationships = R"(<?xml version="1.0" encoding="UTF-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
 <Relationship Target="/3D/3dmodel.model" Id="rel-1" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/>
 <Relationship Target="/Metadata/plate_1.png" Id="rel-2" Type="http://schemas.openxmlformats.org/package/2006/relationships/metadata/thumbnail"/>
</Relationships>)";

constexpr const char* kModelRelationships = R"(<?xml version="1.0" encoding="UTF-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
 <Relationship Target="/3D/Objects/object_1.model" Id="rel-1" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/>
 <Relationship Target="/3D/Textures/checker.png" Id="rel-2" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dtexture"/>
</Relationships>)";

constexpr const char* kModel = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- An <item objectid="1"/> that is none. -->
<model unit="millimeter" xml:lang="en-US" requiredextensions="p" xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02" xmlns:m="http://schemas.microsoft.com/3dmanufacturing/material/2015/02" xmlns:p="http://schemas.microsoft.com/3dmanufacturing/production/2015/06" xmlns:s="http://schemas.example.com/slicer/2017/06">
 <metadata name="Title">Brackets &amp; pins</metadata>
 <metadata name="s:Note"><![CDATA[<item objectid="3" transform="1 0 0 0 1 0 0 0 1 0 0 0"/>]]></metadata>
 <resources>
  <basematerials id="20"><base name="PLA" displaycolor="#FF8000FF"/><base name="PVA" displaycolor="#FFFFFF80"/></basematerials>
  <m:colorgroup id="21"><m:color color="#FF0000FF"/><m:color color="#00FF00FF"/></m:colorgroup>
  <m:texture2d id="22" path="/3D/Textures/checker.png" contenttype="image/png"/>
  <m:texture2dgroup id="23" texid="22"><m:tex2coord u="0" v="0"/><m:tex2coord u="1" v="0"/><m:tex2coord u="0" v="1"/></m:texture2dgroup>
  <object id="1" type="model" name="Pin" partnumber="P-1" pid="20" pindex="0" p:UUID="00000001-61cb-4c03-9d28-80fed5dfa1dc">
   <mesh>
    <vertices><vertex x="0" y="0" z="0"/><vertex x="4" y="0" z="0"/><vertex x="0" y="6" z="0"/><vertex x="0" y="0" z="20"/></vertices>
    <triangles>
     <triangle v1="0" v2="2" v3="1" pid="21" p1="0" p2="1" p3="0"/>
     <triangle v1="0" v2="1" v3="3" pid="23" p1="0" p2="1" p3="2" s:custom_supports="4" paint_color="8"/>
     <triangle v1="0" v2="3" v3="2" paint_seam="0C"/>
     <triangle v1="1" v2="2" v3="3"/>
    </triangles>
   </mesh>
  </object>
  <object id="2" type="model" p:UUID="00000002-61cb-4c03-9d28-80fed5dfa1dc">
   <components>
    <component objectid="1" transform="0 1 0 -1 0 0 0 0 1 10 0 0" p:UUID="00000003-61cb-4c03-9d28-80fed5dfa1dc"/>
    <component objectid="1" transform="2 0 0 0 0.5 0 0 0 1 0 0 5" p:UUID="00000004-61cb-4c03-9d28-80fed5dfa1dc"/>
   </components>
  </object>
  <object id="3" type="model" name="Block" p:UUID="00000005-61cb-4c03-9d28-80fed5dfa1dc">
   <mesh>
    <vertices><vertex x="-1" y="-2" z="-3"/><vertex x="4.5" y="0" z="0"/><vertex x="0" y="5.25" z="0"/><vertex x="0" y="0" z="6.125"/></vertices>
    <triangles><triangle v1="0" v2="2" v3="1"/><triangle v1="0" v2="1" v3="3"/><triangle v1="0" v2="3" v3="2"/><triangle v1="1" v2="2" v3="3"/></triangles>
   </mesh>
  </object>
  <object id="5" type="support" p:UUID="00000006-61cb-4c03-9d28-80fed5dfa1dc">
   <mesh>
    <vertices><vertex x="0" y="0" z="0"/><vertex x="1" y="0" z="0"/><vertex x="0" y="1" z="0"/><vertex x="0" y="0" z="1"/></vertices>
    <triangles><triangle v1="0" v2="2" v3="1"/><triangle v1="0" v2="1" v3="3"/><triangle v1="0" v2="3" v3="2"/><triangle v1="1" v2="2" v3="3"/></triangles>
   </mesh>
  </object>
  <object id="6" type="model" name="Bracket" partnumber="B-6" p:UUID="00000007-61cb-4c03-9d28-80fed5dfa1dc">
   <components>
    <component objectid="2" transform="1 0 0 0 0 1 0 -1 0 3 2 1" p:UUID="00000008-61cb-4c03-9d28-80fed5dfa1dc"/>
    <component p:path="/3D/Objects/object_1.model" objectid="1" transform="1 0 0 0 1 0 0 0 1 -7 0 0" p:UUID="00000009-61cb-4c03-9d28-80fed5dfa1dc"/>
   </components>
  </object>
  <object id="7" type="model" name="Assembly" p:UUID="0000000a-61cb-4c03-9d28-80fed5dfa1dc">
   <components>
    <component objectid="6" p:UUID="0000000b-61cb-4c03-9d28-80fed5dfa1dc"/>
    <component objectid="3" transform="0.5 0 0 0 0.5 0 0 0 0.5 0 0 30" p:UUID="0000000c-61cb-4c03-9d28-80fed5dfa1dc"/>
   </components>
  </object>
 </resources>
 <build p:UUID="0000000d-61cb-4c03-9d28-80fed5dfa1dc">
  <item objectid="6" p:UUID="0000000e-61cb-4c03-9d28-80fed5dfa1dc" transform="1 0 0 0 1 0 0 0 1 128 64 5.5" partnumber="left" printable="1"/>
  <item objectid="6" transform =
    "0 2 0 -2 0 0 0 0 2 10 20 30" p:UUID="0000000f-61cb-4c03-9d28-80fed5dfa1dc"/>
  <item objectid='7' p:UUID="00000010-61cb-4c03-9d28-80fed5dfa1dc"/>
  <item objectid="3" transform='-1 0 0 0 1 0 0 0 1 50 50 0' printable="0" p:UUID="00000011-61cb-4c03-9d28-80fed5dfa1dc"></item>
  <item objectid="5" p:UUID="00000012-61cb-4c03-9d28-80fed5dfa1dc"/>
  <item p:path="/3D/Objects/object_1.model" objectid="1" transform="1 0 0 0 1 0 0 0 1 1 2 3" p:UUID="00000013-61cb-4c03-9d28-80fed5dfa1dc"/>
 </build>
</model>
)";

constexpr const char* kObjectModel = R"(<?xml version="1.0" encoding="UTF-8"?>
<model unit="millimeter" xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02" xmlns:p="http://schemas.microsoft.com/3dmanufacturing/production/2015/06">
 <resources>
  <object id="1" type="model" name="Wedge" p:UUID="00010000-81cb-4c03-9d28-80fed5dfa1dc">
   <mesh>
    <vertices><vertex x="1" y="1" z="1"/><vertex x="9.75" y="1" z="1"/><vertex x="1" y="8" z="1"/><vertex x="1" y="1" z="7"/></vertices>
    <triangles><triangle v1="0" v2="2" v3="1" paint_color="8"/><triangle v1="0" v2="1" v3="3"/><triangle v1="0" v2="3" v3="2"/><triangle v1="1" v2="2" v3="3"/></triangles>
   </mesh>
  </object>
 </resources>
 <build/>
</model>
)";

constexpr const char* kSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<config>
  <object id="6"><metadata key="name" value="bracket.stl"/><metadata key="extruder" value="1"/></object>
  <plate><metadata key="plater_id" value="1"/><model_instance><metadata key="object_id" value="6"/></model_instance></plate>
  <assemble><assemble_item object_id="6" transform="1 0 0 0 1 0 0 0 1 0 0 0"/></assemble>
</config>
)";

// The signature of a PNG file, then what may stand in one: records of an archive.
const std::string kPicture = std::string("\x89PNG\r\n\x1a\n\0\0PK\1\2PK\3\4PK\5\6", 22);

}  // namespace

std::vector<ZipFile> platePackage() {
    return {
        {.name = "[Content_Types].xml", .content = kContentTypes},
        {.name = "Metadata/plate_1.png", .content = kPicture, .method = 0},
        {.name = "_rels/.rels", .content = kRelationships, .hasDescriptor = true},
        {.name = "3D/Objects/object_1.model", .content = kObjectModel, .isZip64 = true},
        {.name = "3D/3dmodel.model", .content = kModel, .hasDescriptor = true},
        {.name = "3D/_rels/3dmodel.model.rels", .content = kModelRelationships},
        {.name = "3D/Textures/checker.png", .content = kPicture, .method = 0},
        {.name = "Metadata/model_settings.config",
         .content = kSettings,
         .extra = std::string("UT\5\0\3abcd", 9)},
        {.name = "Metadata/Slicer.config", .content = "; layer_height = 0.2\n; nozzle = 0.4\n"}};
}
