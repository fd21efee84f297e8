@echo off
rem Traegt Kartix auf diesem Rechner aus (als Administrator), mit /benutzer nur fuer den angemeldeten Benutzer.
setlocal
set WIE=
if /i "%~1"=="/benutzer" set WIE=/n /i:user
set FEHLER=0
call :austragen "%~dp0x86\Kartix.dll" "%SystemRoot%\SysWOW64\regsvr32.exe" "%SystemRoot%\System32\regsvr32.exe"
if exist "%SystemRoot%\SysWOW64\regsvr32.exe" call :austragen "%~dp0x64\Kartix.dll" "%SystemRoot%\System32\regsvr32.exe" ""
if "%FEHLER%"=="0" echo Kartix ist ausgetragen.
exit /b %FEHLER%

:austragen
set PROGRAMM=%~2
if not exist "%PROGRAMM%" set PROGRAMM=%~3
"%PROGRAMM%" /s /u %WIE% "%~1"
if errorlevel 1 (
  echo %~1 konnte nicht ausgetragen werden. Als Administrator ausfuehren, oder mit /benutzer.
  set FEHLER=1
)
exit /b 0
