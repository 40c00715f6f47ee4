#include "fields/field_catalogue.h"

#include <array>

namespace rm8 {
namespace {

using S = StationSettings;
using enum FieldShape;
using enum Page;

constexpr int kNameLength = 100;

const std::array kCatalogue = {
    // Single texts
    FieldInfo{"tabJmenoStanice", Text, General, kNameLength, &S::tabJmenoStanice},
    FieldInfo{"tabPIN", Text, General, 8, &S::tabPIN},
    FieldInfo{"tabTCcentra", Text, General, 0, &S::tabTCcentra},
    FieldInfo{"tabDobaPlatnostiSMS", Text, Sms, 2, &S::tabDobaPlatnostiSMS},
    FieldInfo{"rtNotAuthorized", Text, Sms, kNameLength, &S::rtNotAuthorized},
    FieldInfo{"rtPowerUp", Text, Sms, kNameLength, &S::rtPowerUp},
    FieldInfo{"rtPowerDown", Text, Sms, kNameLength, &S::rtPowerDown},
    FieldInfo{"rtSwitchOn", Text, Sms, kNameLength, &S::rtSwitchOn},
    FieldInfo{"rtSwitchOff", Text, Sms, kNameLength, &S::rtSwitchOff},
    FieldInfo{"rtBattLow", Text, Sms, kNameLength, &S::rtBattLow},
    FieldInfo{"tabUTO", Text, Phones, 4, &S::tabUTO},
    FieldInfo{"eePSOnH", Text, General, 5, &S::eePSOnH},
    FieldInfo{"eePSOnM", Text, General, 5, &S::eePSOnM},
    FieldInfo{"eePSOffH", Text, General, 5, &S::eePSOffH},
    FieldInfo{"eePSOffM", Text, General, 5, &S::eePSOffM},
    // Single check boxes and the option pair
    FieldInfo{"opPINAuth", CheckBox, Sms, 0, &S::opPINAuth},
    FieldInfo{"tabPrepnoutNepovolPristup", CheckBox, Sms, 0, &S::tabPrepnoutNepovolPristup},
    FieldInfo{"tabOdpovidatT0", CheckBox, Sms, 0, &S::tabOdpovidatT0},
    FieldInfo{"opSuperPS", CheckBox, General, 0, &S::opSuperPS},
    FieldInfo{"opPSOutOff", CheckBox, General, 0, &S::opPSOutOff},
    FieldInfo{"opNotAuthorized", CheckBox, Sms, 0, &S::opNotAuthorized},
    FieldInfo{"opPowerReport", CheckBox, Sms, 0, &S::opPowerReport},
    FieldInfo{"opSwitchReport", CheckBox, Sms, 0, &S::opSwitchReport},
    FieldInfo{"opBatt", CheckBox, Sms, 0, &S::opBatt},
    FieldInfo{"tabUTOEnable", CheckBox, Phones, 0, &S::tabUTOEnable},
    FieldInfo{"opEnablePS1", OptionPair, General, 0, &S::opEnablePS1},
    // Texts per row
    FieldInfo{"tabINPNazev", TextRow, DigitalInputs, kNameLength, &S::tabINPNazev},
    FieldInfo{"tabINPZap", TextRow, DigitalInputs, kNameLength, &S::tabINPZap},
    FieldInfo{"tabINPVyp", TextRow, DigitalInputs, kNameLength, &S::tabINPVyp},
    FieldInfo{"tabINPLH", TextRow, DigitalInputs, kNameLength, &S::tabINPLH},
    FieldInfo{"tabINPHL", TextRow, DigitalInputs, kNameLength, &S::tabINPHL},
    FieldInfo{"tabOUTNazev", TextRow, Outputs, kNameLength, &S::tabOUTNazev},
    FieldInfo{"tabOUTZap", TextRow, Outputs, kNameLength, &S::tabOUTZap},
    FieldInfo{"tabOUTVyp", TextRow, Outputs, kNameLength, &S::tabOUTVyp},
    FieldInfo{"tabOUTimpuls", TextRow, Outputs, kNameLength, &S::tabOUTimpuls},
    FieldInfo{"tabOUTimpulsLEN", TextRow, Outputs, 5, &S::tabOUTimpulsLEN},
    FieldInfo{"tabAINNazev", TextRow, Analog1To4, kNameLength, &S::tabAINNazev},
    FieldInfo{"tabAINStateL", TextRow, Analog1To4, kNameLength, &S::tabAINStateL},
    FieldInfo{"tabAINStateM", TextRow, Analog1To4, kNameLength, &S::tabAINStateM},
    FieldInfo{"tabAINStateH", TextRow, Analog1To4, kNameLength, &S::tabAINStateH},
    FieldInfo{"tabAINCL1Level", TextRow, Analog1To4, 4, &S::tabAINCL1Level},
    FieldInfo{"tabAINCL2Level", TextRow, Analog1To4, 4, &S::tabAINCL2Level},
    FieldInfo{"tabAINHCL1Level", TextRow, Analog1To4, 4, &S::tabAINHCL1Level},
    FieldInfo{"tabAINHCL2Level", TextRow, Analog1To4, 4, &S::tabAINHCL2Level},
    FieldInfo{"tabAINCL1Up", TextRow, Analog1To4, kNameLength, &S::tabAINCL1Up},
    FieldInfo{"tabAINCL1Dn", TextRow, Analog1To4, kNameLength, &S::tabAINCL1Dn},
    FieldInfo{"tabAINCL2Up", TextRow, Analog1To4, kNameLength, &S::tabAINCL2Up},
    FieldInfo{"tabAINCL2Dn", TextRow, Analog1To4, kNameLength, &S::tabAINCL2Dn},
    FieldInfo{"tabTC", TextRow, Phones, 50, &S::tabTC},
    // Check boxes per row
    FieldInfo{"tabINPZpr", CheckRow, DigitalInputs, 0, &S::tabINPZpr},
    FieldInfo{"tabINPLHEvent", CheckRow, DigitalInputs, 0, &S::tabINPLHEvent},
    FieldInfo{"tabINPHLEvent", CheckRow, DigitalInputs, 0, &S::tabINPHLEvent},
    FieldInfo{"tabINPNeg", CheckRow, DigitalInputs, 0, &S::tabINPNeg},
    FieldInfo{"tabOUTZpr", CheckRow, Outputs, 0, &S::tabOUTZpr},
    FieldInfo{"tabOUTNeg", CheckRow, Outputs, 0, &S::tabOUTNeg},
    FieldInfo{"tabAINCL1UpEvent", CheckRow, Analog1To4, 0, &S::tabAINCL1UpEvent},
    FieldInfo{"tabAINCL1DnEvent", CheckRow, Analog1To4, 0, &S::tabAINCL1DnEvent},
    FieldInfo{"tabAINCL2UpEvent", CheckRow, Analog1To4, 0, &S::tabAINCL2UpEvent},
    FieldInfo{"tabAINCL2DnEvent", CheckRow, Analog1To4, 0, &S::tabAINCL2DnEvent},
    FieldInfo{"tabAINZpr", CheckRow, Analog1To4, 0, &S::tabAINZpr},
    FieldInfo{"tabAINPrc", CheckRow, Analog1To4, 0, &S::tabAINPrc},
    FieldInfo{"tabAINNeg", CheckRow, Analog1To4, 0, &S::tabAINNeg},
    FieldInfo{"tabTCPrijem", CheckRow, Phones, 0, &S::tabTCPrijem},
    FieldInfo{"tabTCUdalost", CheckRow, Phones, 0, &S::tabTCUdalost},
    // Dialog options per row, and whole bytes
    FieldInfo{"eeMaskDInLHAlarm", FlagRow, DigitalInputs, 0, &S::eeMaskDInLHAlarm},
    FieldInfo{"eeMaskDInHLAlarm", FlagRow, DigitalInputs, 0, &S::eeMaskDInHLAlarm},
    FieldInfo{"eeMaskDOutFnc", Byte, Outputs, 0, &S::eeMaskDOutFnc},
    FieldInfo{"analogOptions", ByteRow, Analog1To4, 0, &S::analogOptions},
};

} // namespace

Page FieldInfo::pageOfRow(std::size_t row) const
{
    return page == Page::Analog1To4 && row >= 4 ? Page::Analog5To8 : page;
}

std::string_view FieldInfo::textIn(const StationSettings& settings, std::size_t row) const
{
    if (const auto* text = std::get_if<std::string StationSettings::*>(&member))
        return settings.**text;
    if (const auto* texts = std::get_if<Row8<std::string> StationSettings::*>(&member))
        return (settings.**texts)[row];
    return {};
}

std::span<const FieldInfo> fieldCatalogue()
{
    return kCatalogue;
}

const FieldInfo* findField(std::string_view name)
{
    for (const auto& field : kCatalogue)
        if (field.name == name)
            return &field;
    return nullptr;
}

} // namespace rm8
