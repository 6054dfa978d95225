#pragma once

#include "Phone/AppIcons.h"
#include "Phone/Appearance.h"
#include "Phone/DarwinNotifications.h"
#include "Phone/Files.h"
#include "Phone/HomeScreen.h"
#include "Phone/Images.h"
#include "Phone/Links.h"
#include "Phone/Mail.h"
#include "Phone/PairedDevices.h"
#include "Phone/PropertyLists.h"
#include "Phone/Subscriptions.h"
#include "Phone/SystemLog.h"
#include "Phone/TextMeasure.h"

#include <memory>
#include <string>
#include <vector>

/// The services that a phone gives its frameworks. Any of them may be null: what needs it then shows less and says
/// nothing.
struct Phone {
    std::shared_ptr<PropertyLists> propertyLists;
    std::shared_ptr<Files> files;
    std::shared_ptr<Images> images;
    std::shared_ptr<SystemLog> systemLog;
    std::shared_ptr<DarwinNotifications> darwinNotifications;
    std::shared_ptr<PairedDevices> pairedDevices;
    std::shared_ptr<Subscriptions> subscriptions;
    std::shared_ptr<HomeScreen> homeScreen;
    std::shared_ptr<AppIcons> appIcons;
    std::shared_ptr<Appearance> appearance;
    std::shared_ptr<TextMeasure> textMeasure;
    std::shared_ptr<Mail> mail;
    std::shared_ptr<Links> links;

    /// Pixels a point on the main screen.
    double screenScale = 2;
    /// The user's languages, best first, as "de" or "pt-BR".
    std::vector<std::string> languages;
    /// The bundle of the application that loads the plug-in, where its translations are looked up.
    std::string mainBundlePath = "/Applications/Preferences.app";

    /// The phone that the process runs on; one without services until a host has set it.
    static Phone& current();
    /// Set once by a host, or for one test by its fixture.
    static void setCurrent(Phone phone);
};
