<?xml version="1.0" encoding="UTF-8"?>
<profile id="amateur-2m" showInChannelList="1">
  <label lang="en">Amateur radio 2 m, FM channels</label>
  <label lang="de">Amateurfunk 2 m, FM-Kanäle</label>
  <description lang="en">FM channels on a raster of 12.5 kHz; channel n lies on 145 MHz + n * 12.5 kHz. Repeaters receive 600 kHz below their output. Source: IARU Region 1 VHF Handbook.</description>
  <description lang="de">FM-Kanäle im Raster von 12,5 kHz; Kanal n liegt auf 145 MHz + n * 12,5 kHz. Relais empfangen 600 kHz unter ihrer Ausgabe. Quelle: IARU Region 1 VHF Handbook.</description>
  <begin>144 MHz</begin>
  <end>146 MHz</end>
  <channels>
    <range label="FM simplex (V)" type="provider" selectable="1">
      <begin>145.20625 MHz</begin>
      <end>145.56875 MHz</end>
      <color>#556b2f</color>
      <comment>V17 to V45; V40 (145.5 MHz) is the calling channel</comment>
      <channels start="145.20625 MHz" width="12.5 kHz" first="17" count="29"/>
    </range>
    <range label="FM repeaters (RV)" type="direction" selectable="1">
      <begin>145.59375 MHz</begin>
      <end>145.79375 MHz</end>
      <color>#9acd32</color>
      <comment>RV48 to RV63. Upper band: repeater output, lower band: repeater input</comment>
      <channels start="145.59375 MHz" width="12.5 kHz" first="48" count="16"/>
      <mirror>-600 kHz</mirror>
    </range>
  </channels>
</profile>
