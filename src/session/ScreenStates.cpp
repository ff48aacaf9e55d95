#include "session/ScreenStates.h"

#include <map>

namespace tavrelle {

namespace {

using C = Control;
using S = Setting;

// The panel controls ClearDisplay hides or disables; data on screen brings them back.
const std::vector<ControlSetting> kPanelOff = {
    {C::RepeatLabel, S::Hide},     {C::RepeatCombo, S::Hide},       {C::MaxAlleleLabel, S::Hide},
    {C::ValidateLabel, S::Hide},   {C::CILabel, S::Hide},           {C::CICombo, S::Hide},
    {C::XLabel, S::Hide},          {C::TablesLabel, S::Hide},       {C::PLocusButton, S::Disable},
    {C::LocusTextBox, S::Disable}, {C::NLocusButton, S::Disable},   {C::AllButton, S::Disable},
    {C::SizeTextBox, S::Disable},  {C::ValidateButton, S::Disable}, {C::RandButton, S::Disable},
    {C::RandTextBox, S::Disable},  {C::NextPopButton, S::Disable},  {C::PPopButton, S::Disable},
    {C::NPopButton, S::Disable}};

const std::vector<ControlSetting> kMenusOff = {
    {C::mnuToggle, S::Disable},     {C::mnuSaveAs, S::Disable},
    {C::mnuSaveDataAs, S::Disable}, {C::mnuDisplayGraphs, S::Disable},
    {C::mnuAnalysis, S::Disable},   {C::mnuLikelihood, S::Disable},
    {C::mnuNulls, S::Disable},      {C::mnuCut, S::Disable},
    {C::mnuCopy, S::Disable},       {C::mnuPaste, S::Disable},
    {C::mnuSelectAll, S::Disable},  {C::mnuDelete, S::Disable},
    {C::ToolSave, S::Disable},      {C::ToolCut, S::Disable},
    {C::ToolCopy, S::Disable},      {C::ToolPaste, S::Disable},
    {C::ToolToggle, S::Disable},    {C::ToolCloseGraphs, S::Disable},
    {C::ToolEstimate, S::Disable},  {C::ToolCompare, S::Disable}};

// Data on screen: the settings panel back (the locus arrows and population buttons are set by
// the routines that fill the locus list and look at the store), and the editing commands on.
const std::vector<ControlSetting> kDataShown = {
    {C::RepeatLabel, S::Show},      {C::RepeatCombo, S::Show},     {C::MaxAlleleLabel, S::Show},
    {C::ValidateLabel, S::Show},    {C::CILabel, S::Show},         {C::CICombo, S::Show},
    {C::XLabel, S::Show},           {C::AllButton, S::Enable},     {C::SizeTextBox, S::Enable},
    {C::ValidateButton, S::Enable}, {C::RandButton, S::Enable},    {C::RandTextBox, S::Enable},
    {C::mnuSaveAs, S::Enable},      {C::mnuSaveDataAs, S::Enable}, {C::mnuDisplayGraphs, S::Enable},
    {C::mnuPaste, S::Enable},       {C::mnuSelectAll, S::Enable},  {C::mnuDelete, S::Enable},
    {C::mnuCut, S::Disable},        {C::mnuCopy, S::Disable},      {C::ToolCut, S::Disable},
    {C::ToolCopy, S::Disable},      {C::ToolPaste, S::Enable},     {C::ToolSave, S::Enable}};

std::vector<ControlSetting> Joined(std::initializer_list<std::vector<ControlSetting>> parts) {
    std::vector<ControlSetting> all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

const std::map<ScreenState, std::vector<ControlSetting>>& Table() {
    static const std::map<ScreenState, std::vector<ControlSetting>> table = {
        {ScreenState::NoData, Joined({kPanelOff, kMenusOff})},
        {ScreenState::OpeningFile,
         {{C::mnuToggle, S::Disable},
          {C::ToolToggle, S::Disable},
          {C::ToolCloseGraphs, S::Disable},
          {C::ToolEstimate, S::Disable},
          {C::ToolCompare, S::Disable},
          {C::mnuDisplayGraphs, S::Disable},
          {C::mnuAnalysis, S::Disable},
          {C::mnuLikelihood, S::Disable},
          {C::mnuNulls, S::Disable}}},
        {ScreenState::DataShown, kDataShown},
        // The Estimate Frequencies command stays on after a reset, as it always has.
        {ScreenState::ResetAfterFailure,
         {{C::mnuToggle, S::Disable},
          {C::ToolToggle, S::Disable},
          {C::ToolCloseGraphs, S::Disable},
          {C::ToolEstimate, S::Disable},
          {C::ToolCompare, S::Disable},
          {C::mnuDisplayGraphs, S::Disable},
          {C::mnuNulls, S::Disable},
          {C::mnuAnalysis, S::Enable},
          {C::mnuLikelihood, S::Enable}}},
        // A typed grid: the data state, with the commands of a first population off and the
        // editing commands on, since its rows can be cut and copied at once.
        {ScreenState::NewGrid, Joined({kDataShown,
                                       {{C::mnuToggle, S::Disable},
                                        {C::ToolToggle, S::Disable},
                                        {C::ToolEstimate, S::Disable},
                                        {C::ToolCompare, S::Disable},
                                        {C::mnuAnalysis, S::Disable},
                                        {C::mnuLikelihood, S::Disable},
                                        {C::mnuNulls, S::Disable},
                                        {C::PLocusButton, S::Disable},
                                        {C::LocusTextBox, S::Disable},
                                        {C::NLocusButton, S::Disable},
                                        {C::NextPopButton, S::Disable},
                                        {C::PPopButton, S::Disable},
                                        {C::NPopButton, S::Disable},
                                        {C::TablesLabel, S::Hide},
                                        {C::mnuCut, S::Enable},
                                        {C::mnuCopy, S::Enable},
                                        {C::ToolCut, S::Enable},
                                        {C::ToolCopy, S::Enable}}})},
        {ScreenState::CheckStarted, {{C::mnuToggle, S::Disable}, {C::ToolToggle, S::Disable}}},
        {ScreenState::CheckAllowsRun,
         {{C::RandButton, S::Enable}, {C::mnuDisplayGraphs, S::Enable}}},
        {ScreenState::AfterRun,
         {{C::mnuToggle, S::Enable},
          {C::mnuAnalysis, S::Enable},
          {C::mnuLikelihood, S::Enable},
          {C::mnuNulls, S::Enable},
          {C::ToolCut, S::Disable},
          {C::ToolCopy, S::Disable},
          {C::ToolPaste, S::Disable},
          {C::ToolToggle, S::Enable},
          {C::ToolCloseGraphs, S::Enable},
          {C::ToolEstimate, S::Enable},
          {C::ToolCompare, S::Enable}}},
        {ScreenState::NextPopulation,
         {{C::NextPopButton, S::Disable},
          {C::mnuDisplayGraphs, S::Disable},
          {C::PPopButton, S::Enable},
          {C::TablesLabel, S::Show},
          {C::mnuToggle, S::Disable},
          {C::mnuAnalysis, S::Disable},
          {C::mnuLikelihood, S::Disable},
          {C::mnuNulls, S::Disable},
          {C::ToolToggle, S::Disable},
          {C::ToolEstimate, S::Disable},
          {C::ToolCompare, S::Disable}}},
        {ScreenState::BrowsePopulations,
         {{C::mnuToggle, S::Disable},
          {C::mnuAnalysis, S::Disable},
          {C::mnuLikelihood, S::Disable},
          {C::mnuNulls, S::Disable},
          {C::ToolToggle, S::Disable},
          {C::ToolEstimate, S::Disable},
          {C::ToolCompare, S::Disable}}},
        {ScreenState::GraphsClosed,
         {{C::ToolCut, S::Enable},
          {C::ToolCopy, S::Enable},
          {C::ToolPaste, S::Enable},
          {C::ToolCloseGraphs, S::Disable},
          {C::ToolToggle, S::Disable}}},
        {ScreenState::GridHidden,
         {{C::ToolCut, S::Disable}, {C::ToolCopy, S::Disable}, {C::ToolPaste, S::Disable}}},
        {ScreenState::GridShown,
         {{C::ToolCut, S::Enable}, {C::ToolCopy, S::Enable}, {C::ToolPaste, S::Enable}}},
        {ScreenState::RowsSelected,
         {{C::ToolCut, S::Enable},
          {C::ToolCopy, S::Enable},
          {C::mnuCut, S::Enable},
          {C::mnuCopy, S::Enable}}},
        {ScreenState::NoRowsSelected,
         {{C::ToolCut, S::Disable},
          {C::ToolCopy, S::Disable},
          {C::mnuCut, S::Disable},
          {C::mnuCopy, S::Disable}}},
    };
    return table;
}

}  // namespace

const std::vector<ControlSetting>& SettingsOf(ScreenState state) {
    return Table().at(state);
}

}  // namespace tavrelle
