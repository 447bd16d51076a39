#pragma once

#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"
#include "Workshop/WorkshopController.h"

#include <gtest/gtest.h>

namespace Maptorn::Testing
{
// The window's controller over a module with a mod.io client, on the in-process fakes.
class FWorkshopTest : public ::testing::Test
{
protected:
    FWorkshopTest()
        : Module(Fakes.Platform, FMaptornConfig{})
    {
        Module.ModioClient = std::make_unique<FModioInterface>(Fakes.Platform, FMaptornConfig{});
        Client = Module.ModioClient.get();
    }

    FFakePlatform Fakes;
    FMaptornModule Module;
    FModioInterface* Client = nullptr;
    FWorkshopController Controller;
};
}
