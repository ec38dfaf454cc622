; The setup program of Quorvale. For Windows 95 to the newest, so its texts are in ANSI.
;
; Built by cmake/windows_package.cmake, which defines
;   VERSION          the project's version, "1.0.0"
;   OUT_FILE         the setup program
;   PROGRAM          Quorvale.exe
;   FILES            the folder of the help file, the sound and the setup program's pictures
;   ICON             the program's icon
;   INSTANCE_MUTEX   what a running Quorvale holds
;
; Switches of the setup program (letters in either case, /S and /D as they stand):
;   /S               no windows
;   /AllUsers        for all users of the computer; needs administrator rights
;   /CurrentUser     for the present user
;   /DesktopLink     a shortcut on the desktop as well
;   /D=FOLDER        where to install; the last switch, without quotes
; Switches of the uninstaller:
;   /S               no windows
;   /DeleteUserData  also the present user's logs, settings, and backups in the first backup folder
; Exit status of both: 0 done, 1 cancelled, 2 not possible (no rights, or Quorvale is running).

Unicode false
SetCompressor /SOLID lzma

!define NAME "Quorvale"
!define MAKER "Tarnwick"
!define KIND "Quorvale.Backup"  ; the file association's name for a ".obk" file
!define CLASSES "Software\Classes"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${NAME}"
!define USER_KEY "Software\${MAKER}\${NAME}"

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "${NAME}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_FUNCTION KeepAskedFolder
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh

Name "${NAME}"
OutFile "${OUT_FILE}"
BrandingText "${NAME} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey CompanyName "${MAKER}"
VIAddVersionKey FileDescription "${NAME} setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "${MAKER}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${FILES}/setup_side.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${FILES}/setup_side.bmp"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${FILES}/setup_header.bmp"
!define MUI_ABORTWARNING

!define MUI_WELCOMEPAGE_TEXT "Quorvale saves your mail, mail settings, browser data and files into one \
file, and brings them back later on this computer or another one.$\r$\n$\r$\nThis program installs \
version ${VERSION}.$\r$\n$\r$\n$_CLICK"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\Quorvale.exe"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\Quorvale.chm"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Read the help"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!define MUI_FINISHPAGE_NOREBOOTSUPPORT
!insertmacro MUI_PAGE_FINISH

!define MUI_WELCOMEPAGE_TEXT "This removes Quorvale from the computer. Your backups, logs and settings stay \
unless you tick their box on the next page.$\r$\n$\r$\nClose Quorvale before you go on.$\r$\n$\r$\n$_CLICK"
!insertmacro MUI_UNPAGE_WELCOME
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_UNPAGE_FINISH
!insertmacro MUI_LANGUAGE "English"

Var AskedFolder  ; what /D gave

; True ($0 is not 0) while Quorvale runs.
!macro FindRunning
  System::Call 'kernel32::OpenMutex(i 0x100000, i 0, t "${INSTANCE_MUTEX}") i .r0'
  ${If} $0 <> 0
    System::Call 'kernel32::CloseHandle(i r0)'
  ${EndIf}
!macroend

; Its file cannot be replaced or removed while it runs.
!macro WaitUntilClosed
  ${Do}
    !insertmacro FindRunning
    ${If} $0 = 0
      ${ExitDo}
    ${EndIf}
    ${If} ${Silent}
      SetErrorLevel 2
      Quit
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Quorvale is running. Close it and press Retry." \
      IDRETRY again
    SetErrorLevel 1
    Quit
    again:
  ${Loop}
!macroend

; A message box about missing rights would stand there for ever in a run without windows.
!macro RefuseSilently PREFIX
  ${If} ${Silent}
    UserInfo::GetAccountType
    Pop $1
    ${${PREFIX}GetParameters} $0
    ClearErrors
    ${${PREFIX}GetOptions} $0 "/AllUsers" $2
    ${IfNot} ${Errors}
    ${AndIf} ${IsNT}
    ${AndIf} $1 != "Admin"
    ${AndIf} $1 != "Power"
      SetErrorLevel 2
      Quit
    ${EndIf}
  ${EndIf}
!macroend

; --- Installing -------------------------------------------------------------------------------------

Function KeepAskedFolder
  ${If} $AskedFolder != ""
    StrCpy $INSTDIR $AskedFolder
  ${EndIf}
FunctionEnd

Section "${NAME}" SectionProgram
  SectionIn RO
  !insertmacro WaitUntilClosed
  SetOutPath "$INSTDIR"
  File "/oname=Quorvale.exe" "${PROGRAM}"
  File "${FILES}/Quorvale.chm"
  File "${FILES}/chimes.wav"
  WriteUninstaller "$INSTDIR\Uninstall.exe"

  CreateDirectory "$SMPROGRAMS\${NAME}"
  CreateShortCut "$SMPROGRAMS\${NAME}\${NAME}.lnk" "$INSTDIR\Quorvale.exe"
  CreateShortCut "$SMPROGRAMS\${NAME}\${NAME} Help.lnk" "$INSTDIR\Quorvale.chm"
  CreateShortCut "$SMPROGRAMS\${NAME}\Remove ${NAME}.lnk" "$INSTDIR\Uninstall.exe" \
    "/$MultiUser.InstallMode"

  ; The quotes keep a path with blanks in one piece. What was there before comes back at the end.
  ReadRegStr $0 SHCTX "${CLASSES}\.obk" ""
  ${If} $0 != ""
  ${AndIf} $0 != "${KIND}"
    WriteRegStr SHCTX "${CLASSES}\${KIND}" "Former" "$0"
  ${EndIf}
  WriteRegStr SHCTX "${CLASSES}\.obk" "" "${KIND}"
  WriteRegStr SHCTX "${CLASSES}\${KIND}" "" "Quorvale backup"
  WriteRegStr SHCTX "${CLASSES}\${KIND}\DefaultIcon" "" "$INSTDIR\Quorvale.exe,0"
  WriteRegStr SHCTX "${CLASSES}\${KIND}\shell\open\command" "" '"$INSTDIR\Quorvale.exe" "%1"'
  ${RefreshShellIcons}

  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Quorvale.exe,0"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "${MAKER}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" \
    '"$INSTDIR\Uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" \
    '"$INSTDIR\Uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

Section /o "Shortcut on the desktop" SectionDesktop
  SetOutPath "$INSTDIR"
  CreateShortCut "$DESKTOP\${NAME}.lnk" "$INSTDIR\Quorvale.exe"
SectionEnd

LangString AboutProgram ${LANG_ENGLISH} "The program, its help, an entry in the Start menu, and the \
association with .obk files."
LangString AboutDesktop ${LANG_ENGLISH} "A shortcut to Quorvale on the desktop."
!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} $(AboutProgram)
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionDesktop} $(AboutDesktop)
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  StrCpy $AskedFolder $INSTDIR
  !insertmacro RefuseSilently ""
  !insertmacro MULTIUSER_INIT
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/DesktopLink" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${SectionDesktop}
  ${EndIf}
FunctionEnd

; --- Removing ---------------------------------------------------------------------------------------

Section "un.${NAME}" UnSectionProgram
  SectionIn RO
  !insertmacro WaitUntilClosed
  ; Only what was installed: the folder may hold files of the user.
  Delete "$INSTDIR\Quorvale.exe"
  Delete /REBOOTOK "$INSTDIR\Quorvale.chm"  ; the help viewer may show it
  Delete "$INSTDIR\chimes.wav"
  Delete "$INSTDIR\Uninstall.exe"
  ; A window that was opened from there may still hold the empty folder. It goes at the next start
  ; then, for which nobody need be asked.
  RMDir /REBOOTOK "$INSTDIR"
  SetRebootFlag false

  Delete "$SMPROGRAMS\${NAME}\${NAME}.lnk"
  Delete "$SMPROGRAMS\${NAME}\${NAME} Help.lnk"
  Delete "$SMPROGRAMS\${NAME}\Remove ${NAME}.lnk"
  RMDir "$SMPROGRAMS\${NAME}"
  Delete "$DESKTOP\${NAME}.lnk"
  ; The shortcuts that the settings page makes.
  SetShellVarContext current
  Delete "$DESKTOP\${NAME}.lnk"
  Delete "$SMPROGRAMS\${NAME}.lnk"
  ${If} $MultiUser.InstallMode == "AllUsers"
    SetShellVarContext all
  ${EndIf}

  ReadRegStr $0 SHCTX "${CLASSES}\.obk" ""
  ${If} $0 == "${KIND}"
    ReadRegStr $1 SHCTX "${CLASSES}\${KIND}" "Former"
    ${If} $1 != ""
      WriteRegStr SHCTX "${CLASSES}\.obk" "" "$1"
    ${Else}
      DeleteRegValue SHCTX "${CLASSES}\.obk" ""
      DeleteRegKey /ifempty SHCTX "${CLASSES}\.obk"
    ${EndIf}
  ${EndIf}
  DeleteRegKey SHCTX "${CLASSES}\${KIND}"
  ${RefreshShellIcons}
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd

Section /o "un.Backups and settings" UnSectionUserData
  ; The folder that the program makes at its start: below %APPDATA%, and on systems without that
  ; variable at the root of the drive.
  ReadEnvStr $0 APPDATA
  ${If} $0 == ""
    StrCpy $0 "$INSTDIR" 2
  ${EndIf}
  RMDir /r "$0\${MAKER}\${NAME}"
  RMDir "$0\${MAKER}"
  DeleteRegKey HKCU "${USER_KEY}"
  DeleteRegKey /ifempty HKCU "Software\${MAKER}"
SectionEnd

LangString AboutRemoval ${LANG_ENGLISH} "Removes the program. Your backups, logs and settings stay."
LangString AboutUserData ${LANG_ENGLISH} "Deletes your logs and settings, and the backups in the folder \
that Quorvale chose at first. Backups in other folders stay. This cannot be undone."
!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${UnSectionProgram} $(AboutRemoval)
  !insertmacro MUI_DESCRIPTION_TEXT ${UnSectionUserData} $(AboutUserData)
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
  !insertmacro RefuseSilently "un."
  !insertmacro MULTIUSER_UNINIT
  ${un.GetParameters} $0
  ClearErrors
  ${un.GetOptions} $0 "/DeleteUserData" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${UnSectionUserData}
  ${EndIf}
FunctionEnd
