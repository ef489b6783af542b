; The installer for one user, without the rights of an administrator: into a folder where the user may
; write, so that the two files beside the program can be edited. Called with VERSION, SOURCE, the folder
; with all files, LISTS, the folder of the lists that are made from it, and OUTPUT.
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID lzma
!include MUI2.nsh
!include LogicLib.nsh

Name "Varlune ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Varlune"
InstallDirRegKey HKCU Software\Varlune Folder
BrandingText " "
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName Varlune
VIAddVersionKey FileDescription "Installation de Varlune"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "The Varlune developers, licence MIT"

!define MUI_ICON "${SOURCE}\..\varlune.ico"
!define MUI_UNICON "${SOURCE}\..\varlune.ico"
!define MUI_FINISHPAGE_RUN "$INSTDIR\varlune.exe"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${SOURCE}\LICENSE"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE French

!define UNINSTALL Software\Microsoft\Windows\CurrentVersion\Uninstall\Varlune

; Sets $0 to 1 where the files $1 and $2 hold the same, else to 0.
!macro COMPARE_FUNCTION un
Function ${un}Compare
    StrCpy $0 0
    ClearErrors
    FileOpen $3 $1 r
    FileOpen $4 $2 r
    ${IfNot} ${Errors}
        ${Do}
            FileReadByte $3 $5
            FileReadByte $4 $6
            ${If} $5 != $6
            ${OrIf} $5 == "" ; the end
                ${Break}
            ${EndIf}
        ${Loop}
        ${If} $5 == $6
            StrCpy $0 1
        ${EndIf}
    ${EndIf}
    FileClose $3
    FileClose $4
    ClearErrors
FunctionEnd
!macroend
!insertmacro COMPARE_FUNCTION ""
!insertmacro COMPARE_FUNCTION un.

; What the user has changed stays; the copy in the folder "origine" tells what that is.
!macro INSTALL_SETTINGS name
    StrCpy $0 1
    ${If} ${FileExists} "$INSTDIR\${name}"
        StrCpy $1 "$INSTDIR\${name}"
        StrCpy $2 "$INSTDIR\origine\${name}"
        Call Compare
    ${EndIf}
    ${If} $0 = 1
        SetOutPath $INSTDIR
        File "${SOURCE}\${name}"
    ${EndIf}
    SetOutPath $INSTDIR\origine
    File "${SOURCE}\${name}"
!macroend

!macro REMOVE_SETTINGS name
    StrCpy $1 "$INSTDIR\${name}"
    StrCpy $2 "$INSTDIR\origine\${name}"
    Call un.Compare
    ${If} $0 = 1
        Delete "$INSTDIR\${name}"
    ${EndIf}
    Delete "$INSTDIR\origine\${name}"
!macroend

Section
    SetShellVarContext current
    !insertmacro INSTALL_SETTINGS PARAM.INI
    !insertmacro INSTALL_SETTINGS SEQUENCE.INI
    SetOutPath $INSTDIR
    File /r /x PARAM.INI /x SEQUENCE.INI "${SOURCE}\*"
    SetOutPath $INSTDIR\exemples
    File "${SOURCE}\exemples\*.INI"
    WriteUninstaller "$INSTDIR\desinstaller.exe"

    ; A link starts its program in the folder that is the present one here.
    SetOutPath $DOCUMENTS
    CreateDirectory "$SMPROGRAMS\Varlune"
    CreateShortcut "$SMPROGRAMS\Varlune\Varlune.lnk" "$INSTDIR\varlune.exe"
    CreateShortcut "$SMPROGRAMS\Varlune\Préparer un fichier.lnk" "$INSTDIR\varlune-preparer.exe"
    CreateShortcut "$SMPROGRAMS\Varlune\Manuel.lnk" "$INSTDIR\manuel\varlune.html"
    CreateShortcut "$SMPROGRAMS\Varlune\Lisez-moi.lnk" "$INSTDIR\LISEZMOI.txt"
    CreateShortcut "$SMPROGRAMS\Varlune\Dossier de Varlune.lnk" "$INSTDIR"

    WriteRegStr HKCU Software\Varlune Folder "$INSTDIR"
    WriteRegStr HKCU ${UNINSTALL} DisplayName "Varlune ${VERSION}"
    WriteRegStr HKCU ${UNINSTALL} DisplayVersion "${VERSION}"
    WriteRegStr HKCU ${UNINSTALL} DisplayIcon "$INSTDIR\varlune.exe"
    WriteRegStr HKCU ${UNINSTALL} Publisher Varlune
    WriteRegStr HKCU ${UNINSTALL} InstallLocation "$INSTDIR"
    WriteRegStr HKCU ${UNINSTALL} UninstallString '"$INSTDIR\desinstaller.exe"'
    WriteRegStr HKCU ${UNINSTALL} QuietUninstallString '"$INSTDIR\desinstaller.exe" /S'
    WriteRegDWORD HKCU ${UNINSTALL} NoModify 1
    WriteRegDWORD HKCU ${UNINSTALL} NoRepair 1
SectionEnd

Section Uninstall
    SetShellVarContext current
    SetOutPath $TEMP
    !insertmacro REMOVE_SETTINGS PARAM.INI
    !insertmacro REMOVE_SETTINGS SEQUENCE.INI
    RMDir "$INSTDIR\origine"
    ; What has been installed, and nothing else that lies there.
    !include "${LISTS}\uninstall.nsh"
    Delete "$INSTDIR\desinstaller.exe"
    RMDir $INSTDIR
    Delete "$SMPROGRAMS\Varlune\*.lnk"
    RMDir "$SMPROGRAMS\Varlune"
    DeleteRegKey HKCU Software\Varlune
    DeleteRegKey HKCU ${UNINSTALL}
SectionEnd
