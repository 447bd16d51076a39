# Puts the third-party headers the engine build of the plug-in needs under Source/ThirdParty
# (git-ignored: nothing third-party is committed). Run it once from the plug-in folder before
# building the editor; a download whose SHA-256 differs from the pin is refused.
$ErrorActionPreference = 'Stop'
Set-Location (Join-Path $PSScriptRoot '..')

$Version = '3.11.2'
$Url = "https://github.com/nlohmann/json/releases/download/v$Version/json.hpp"
$Sha256 = '665fa14b8af3837966949e8eb0052d583e2ac105d3438baba9951785512cf921'

$DestDir = 'Source/ThirdParty/nlohmann/include/nlohmann'
$Dest = Join-Path $DestDir 'json.hpp'
$Stamp = 'Source/ThirdParty/nlohmann/.pinned'
$PinLine = "nlohmann/json $Version $Sha256"

if ((Test-Path $Stamp) -and ((Get-Content $Stamp -Raw).Trim() -eq $PinLine) -and (Test-Path $Dest)) { exit 0 }

$Temp = New-TemporaryFile
try {
    Invoke-WebRequest -Uri $Url -OutFile $Temp -UseBasicParsing
    $Actual = (Get-FileHash -Algorithm SHA256 $Temp).Hash.ToLowerInvariant()
    if ($Actual -ne $Sha256) { throw "fetch-thirdparty: $Url has SHA-256 $Actual, pinned $Sha256: refusing it" }
    if (Test-Path $DestDir) { Remove-Item -Recurse -Force $DestDir }
    New-Item -ItemType Directory -Force -Path $DestDir | Out-Null
    Move-Item $Temp $Dest
    Set-Content -Path $Stamp -Value $PinLine
    Write-Host "fetch-thirdparty: nlohmann/json $Version into $DestDir"
}
finally {
    if (Test-Path $Temp) { Remove-Item -Force $Temp }
}
