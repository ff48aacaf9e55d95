#pragma once

#include <QDialog>
#include <QString>
#include <filesystem>

class QLabel;
class QPushButton;

namespace tavrelle {

// "About Tavrelle": the program's title, version, description, legal notice, acknowledgements
// and authors, and the system information button.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* kDescription =
        "Checks for microsatellite null alleles and scoring errors due to stuttering and large "
        "allele drop-out ( i.e. short allele dominance) in samples of panmictic populations of "
        "diploid organisms.  Tavrelle can also adjust allele and genotype frequencies if null "
        "alleles are detected.";

    frmAbout(std::filesystem::path programFolder, QWidget* parent = nullptr);

    // On Windows the system information program; elsewhere a box with what Qt knows of the
    // system, the program's version and its folder.
    void cmdSysInfo_Click();
    QString SystemInformation() const;

    QLabel *lblTitle, *lblVersion, *lblDescription, *lblDisclaimer, *lblComment, *lblAuthor;
    QLabel* picIcon;
    QPushButton *cmdOK, *cmdSysInfo;

private:
    std::filesystem::path programFolder_;
};

}  // namespace tavrelle
