<?xml version="1.0" encoding="UTF-8"?>
<profile id="fm-broadcast-us" showInChannelList="1">
  <label lang="en">FM broadcast (United States)</label>
  <label lang="de">UKW-Rundfunk (Vereinigte Staaten)</label>
  <description lang="en">Channels 201 to 300, 200 kHz each, carriers from 88.1 to 107.9 MHz. Source: 47 CFR 73.201 and 73.501.</description>
  <description lang="de">Kanäle 201 bis 300 zu je 200 kHz, Träger von 88,1 bis 107,9 MHz. Quelle: 47 CFR 73.201 und 73.501.</description>
  <begin>88 MHz</begin>
  <end>108 MHz</end>
  <channels>
    <range label="Reserved for noncommercial use" type="provider" selectable="1">
      <begin>88 MHz</begin>
      <end>92 MHz</end>
      <color>#2f8f6b</color>
      <comment>Channels 201 to 220</comment>
      <channels start="88 MHz" width="200 kHz" first="201" count="20"/>
    </range>
    <range label="Unreserved" type="provider" selectable="1">
      <begin>92 MHz</begin>
      <end>108 MHz</end>
      <color>#3366cc</color>
      <comment>Channels 221 to 300</comment>
      <channels start="92 MHz" width="200 kHz" first="221" count="80"/>
    </range>
  </channels>
</profile>
