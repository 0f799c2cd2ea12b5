#include "platforminfo/CameraRoleTables.h"

#include "platforminfo/CameraPlatformInfoZelvan.h"

using namespace camera_role;

// Keyed by the platform's device id. Device 0 is the three-part SAT device; the plain back wide sensor, which
// is sensor 0, is device 7.
NamedTable<RoleIdDesc> CameraPlatformInfoZelvan::DeviceId2RoleId{
    "DeviceId2RoleId",
    {{0,
      {.roleId = kThreePartSat,
       .sensorNames = "imx707;ov13b10",
       .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_3PARTSAT"}},
     {1, {.roleId = kFrontMain, .sensorNames = "imx596", .drvName = "SENSOR_DRVNAME_HALCYRION_FRONT_MAIN"}},
     {2, {.roleId = kBackTele, .sensorNames = "ov50d", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_TELE"}},
     {3, {.roleId = kBackUltra, .sensorNames = "ov13b10", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_ULTRA"}},
     {4,
      {.roleId = kSat,
       .sensorNames = "imx707;ov13b10;ov50d",
       .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_SAT"}},
     {5,
      {.roleId = kTeleBokeh,
       .sensorNames = "ov50d;imx707",
       .drvName = "SENSOR_DRVNAME_HALCYRION_2XBACK_BOKEH"}},
     {6,
      {.roleId = kBokeh, .sensorNames = "imx707;ov13b10", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_BOKEH"}},
     {7, {.roleId = kBackMain, .sensorNames = "imx707", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_WIDE"}}},
};

// The physical sensors alone, numbered without the logical devices.
const RoleIdDescMap CameraPlatformInfoZelvan::PhysicalDeviceId2RoleId = {
    {0, {.roleId = kBackMain, .sensorNames = "imx707", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_WIDE"}},
    {1, {.roleId = kFrontMain, .sensorNames = "imx596", .drvName = "SENSOR_DRVNAME_HALCYRION_FRONT_MAIN"}},
    {2, {.roleId = kBackTele, .sensorNames = "ov50d", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_TELE"}},
    {3, {.roleId = kBackUltra, .sensorNames = "ov13b10", .drvName = "SENSOR_DRVNAME_HALCYRION_BACK_ULTRA"}},
};

const MemberRolesMap CameraPlatformInfoZelvan::RoleId2MemberRoleIds = {
    {kSat, {kSat, 62}},
    {kSecondSat, {kSecondSat}},
};

NameMap MakeRoleNames() {
    return {
        {kBackMain, "back_main"},       {kFrontMain, "front_main"}, {kBackTele, "back_tele"},
        {kBackUltra, "back_ultra"},     {kBackMacro, "back_macro"}, {kBackTel4x, "back_tel4x"},
        {kBackMacro2x, "back_macro2x"}, {kBackDepth, "back_depth"}, {kFrontAux, "front_aux"},
    };
}

FuseIdDescriptorMap MakeFuseIdDescriptors() {
    return {
        {kBackMain,
         {.fuseIdOffset = 16,
          .fuseIdLength = 12,
          .propName = "vendor.camera.sensor.w.fuseID",
          .propNameLong = "vendor.camera.sensor.rearMain.fuseID"}},
        {kFrontMain,
         {.fuseIdOffset = 16,
          .fuseIdLength = 11,
          .propName = "vendor.camera.sensor.f.fuseID",
          .propNameLong = "vendor.camera.sensor.frontMain.fuseID"}},
        {kBackUltra,
         {.fuseIdOffset = 16,
          .fuseIdLength = 16,
          .propName = "vendor.camera.sensor.u.fuseID",
          .propNameLong = "vendor.camera.sensor.rearUltra.fuseID"}},
        {kBackTele,
         {.fuseIdOffset = 16,
          .fuseIdLength = 16,
          .propName = "vendor.camera.sensor.t.fuseID",
          .propNameLong = "vendor.camera.sensor.rearTele.fuseID"}},
    };
}

QRCodeMap MakeQRCodeDescriptors() {
    return {
        {kBackMain, {{3, {.qrCodeOffset = 16355, .qrCodeLength = 14, .flagOffset = 16354}}}},
        {kFrontMain, {{16, {.qrCodeOffset = 8082, .qrCodeLength = 14, .flagOffset = 8081}}}},
        {kBackTele, {{1, {.qrCodeOffset = 16355, .qrCodeLength = 14, .flagOffset = 16354}}}},
        {kBackUltra, {{7, {.qrCodeOffset = 8082, .qrCodeLength = 14, .flagOffset = 8081}}}},
    };
}

NameMap MakeSensorInfoProperties() {
    return {
        {kBackMain, "vendor.camera.sensor.w.sensorInfo"},
        {kBackTele, "vendor.camera.sensor.t.sensorInfo"},
        {kFrontMain, "vendor.camera.sensor.f.sensorInfo"},
        {kBackUltra, "vendor.camera.sensor.u.sensorInfo"},
        {kFrontAux, "vendor.camera.sensor.faux.sensorInfo"},
        {kBackMacro, "vendor.camera.sensor.m.sensorInfo"},
        {kBackTel4x, "vendor.camera.sensor.t4x.sensorInfo"},
        {kBackMacro2x, "vendor.camera.sensor.m2x.sensorInfo"},
        {kBackDepth, "vendor.camera.sensor.d.sensorInfo"},
    };
}

NameMap MakeAFInfoProperties() {
    return {
        {kBackMain, "persist.vendor.camera.sensor.w.afInfo"},
        {kBackTele, "persist.vendor.camera.sensor.t.afInfo"},
        {kFrontMain, "persist.vendor.camera.sensor.f.afInfo"},
        {kBackUltra, "persist.vendor.camera.sensor.u.afInfo"},
        {kFrontAux, "persist.vendor.camera.sensor.faux.afInfo"},
        {kBackMacro, "persist.vendor.camera.sensor.m.afInfo"},
        {kBackTel4x, "persist.vendor.camera.sensor.t4x.afInfo"},
        {kBackMacro2x, "persist.vendor.camera.sensor.m2x.afInfo"},
        {kBackDepth, "persist.vendor.camera.sensor.d.afInfo"},
    };
}

NameMap MakeMakerNames() {
    return {
        {1, "sunny"},
        {3, "semco"},
        {6, "qtech"},
        {7, "ofilm"},
        {8, "holitech"},
        {9, "truly"},
        // The underscore belongs to the name: it matches EEPROM driver names that end in it.
        {16, "_aac"},
        {21, "liteon"},
        {37, "primax"},
    };
}
