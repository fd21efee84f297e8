@echo off
rem Traegt Kartix fuer diesen Rechner ein (als Administrator), mit /benutzer nur fuer den angemeldeten Benutzer.
setlocal
set WIE=
if /i "%~1"=="/benutzer" set WIE=/n /i:user
set FEHLER=0
call :eintragen "%~dp0x86\Kartix.dll" "%SystemRoot%\SysWOW64\regsvr32.exe" "%SystemRoot%\System32\regsvr32.exe"
if exist "%SystemRoot%\SysWOW64\regsvr32.exe" call :eintragen "%~dp0x64\Kartix.dll" "%SystemRoot%\System32\regsvr32.exe" ""
if "%FEHLER%"=="0" echo Kartix ist eingetragen.
exit /b %FEHLER%

:eintragen
set PROGRAMM=%~2
if not exist "%PROGRAMM%" set PROGRAMM=%~3
"%PROGRAMM%" /s %WIE% "%~1"
if errorlevel 1 (
  echo %~1 konnte nicht eingetragen werden. Als Administrator ausfuehren, oder mit /benutzer.
  set FEHLER=1
)
exit /b 0
