/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/post/image_operations.h"

#include "objects/documents.h"
#include "tests/support/stack_test.h"

namespace image_operations
{

namespace
{

struct Records
{
    Records()
    {
        stack::put(image.achImageID, "34020000001190000001022024010203040500001");
        stack::put(face.achFaceID, "340200000011900000010220240102030405000010600001");
        stack::put(person.achPersonID, "340200000011900000010220240102030405000010100001");
        stack::put(motorVehicle.achMotorVehicleID, "340200000011900000010220240102030405000010200001");
        stack::put(nonMotorVehicle.achNonMotorVehicleID, "340200000011900000010220240102030405000010300001");
        stack::put(thing.achThingID, "thing");
        stack::put(thing.achName, "\"quoted\" \\ \xE5\x8C\x85\n"); /* characters that a printer has to escape */
        stack::put(scene.achSceneID, "scene");
        picture.ptImageInfo = &image;
        picture.nImageNum = 1;
        picture.ptFace = &face;
        picture.nFaceNum = 1;
        picture.pchData = "aGVsbG8=";
    }

    TPubSecImageObjInfo image = {};
    TPubSecFaceObjInfo face = {};
    TPubSecPersonnelObjInfo person = {};
    TPubSecMotorVehicleObjInfo motorVehicle = {};
    TPubSecNonMotorVehicleObjInfo nonMotorVehicle = {};
    TPubSecThingObjInfo thing = {};
    TPubSecSceneObjInfo scene = {};
    TPubSecIntelliPicObj picture = {};
};

Records& records()
{
    static Records only;
    return only;
}

} // namespace

const TPubSecIntelliPicObj& picture()
{
    return records().picture;
}

const std::vector<Operation>& all()
{
    static const std::vector<Operation> operations = {
        {"PubSecPostImage", "/VIID/Images", true, false, 61,
         [](u32 platform) { return PubSecPostImage(platform, &records().picture, nullptr); },
         [](u32 platform) { return PubSecPostImage(platform, nullptr, nullptr); }, nullptr,
         [] { return _PubSecImageGatherJSON(&records().picture); }},
        {"PubSecPostImageEX", "/VIID/Images", false, false, 69,
         [](u32 platform) { return PubSecPostImageEX(platform, &records().picture, 77); },
         [](u32 platform) { return PubSecPostImageEX(platform, nullptr, 1); }, nullptr,
         [] { return _PubSecImageGatherJSONEX(&records().picture); }},
        {"PubSecPostImageSingle", "/VIID/Images", true, false, 69,
         [](u32 platform) { return PubSecPostImageSingle(platform, &records().picture.ptImageInfo); },
         [](u32 platform) { return PubSecPostImageSingle(platform, nullptr); }, nullptr,
         [] { return _PubSecImageSingleJson(&records().picture.ptImageInfo); }},
        {"PubSecPostImageFace", "/VIID/Faces", true, true, 69,
         [](u32 platform) { return PubSecPostImageFace(platform, &records().face, 1); },
         [](u32 platform) { return PubSecPostImageFace(platform, nullptr, 1); },
         [](u32 platform) { return PubSecPostImageFace(platform, nullptr, 0); },
         [] { return _PubSecImageFaceJSON(&records().face, 1); }},
        {"PubSecPostImagePerson", "/VIID/Persons", true, false, 69,
         [](u32 platform) { return PubSecPostImagePerson(platform, &records().person, 1); },
         [](u32 platform) { return PubSecPostImagePerson(platform, nullptr, 1); },
         [](u32 platform) { return PubSecPostImagePerson(platform, nullptr, 0); },
         [] { return _PubSecImagePersonJSON(&records().person, 1); }},
        {"PubSecPostImageMotorVehicle", "/VIID/MotorVehicles", true, false, 69,
         [](u32 platform) { return PubSecPostImageMotorVehicle(platform, &records().motorVehicle, 1); },
         [](u32 platform) { return PubSecPostImageMotorVehicle(platform, nullptr, 1); },
         [](u32 platform) { return PubSecPostImageMotorVehicle(platform, nullptr, 0); },
         [] { return _PubSecImageMotorVehicleJSON(&records().motorVehicle, 1); }},
        {"PubSecPostImageNonMotVeh", "/VIID/NonMotorVehicles", true, false, 61,
         [](u32 platform) { return PubSecPostImageNonMotVeh(platform, &records().nonMotorVehicle, 1); },
         [](u32 platform) { return PubSecPostImageNonMotVeh(platform, nullptr, 1); },
         [](u32 platform) { return PubSecPostImageNonMotVeh(platform, nullptr, 0); },
         [] { return _PubSecImageNonMotorVehicleJSON(&records().nonMotorVehicle, 1); }},
        {"PubSecPostImageThing", "/VIID/Things", true, false, 61,
         [](u32 platform) { return PubSecPostImageThing(platform, &records().thing, 1); },
         [](u32 platform) { return PubSecPostImageThing(platform, nullptr, 1); },
         [](u32 platform) { return PubSecPostImageThing(platform, nullptr, 0); },
         [] { return _PubSecImageThingJSON(&records().thing, 1); }},
        {"PubSecPostImageScene", "/VIID/Scenes", true, false, 61,
         [](u32 platform) { return PubSecPostImageScene(platform, &records().scene, 1); },
         [](u32 platform) { return PubSecPostImageScene(platform, nullptr, 1); },
         [](u32 platform) { return PubSecPostImageScene(platform, nullptr, 0); },
         [] { return _PubSecImageSceneJSON(&records().scene, 1); }},
    };
    return operations;
}

} // namespace image_operations
