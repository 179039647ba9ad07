<?xml version="1.0" encoding="UTF-8"?>
<profile id="wlan-5g" showInChannelList="1">
  <label lang="en">WLAN 5 GHz</label>
  <label lang="de">WLAN 5 GHz</label>
  <description lang="en">Channels of 20 MHz in the U-NII sub-bands; the centre of channel n is 5000 MHz + n * 5 MHz. Source: IEEE 802.11; 47 CFR 15.407; ECC/DEC/(04)08 for Europe.</description>
  <description lang="de">Kanäle zu 20 MHz in den U-NII-Teilbändern; die Mitte von Kanal n ist 5000 MHz + n * 5 MHz. Quelle: IEEE 802.11; 47 CFR 15.407; ECC/DEC/(04)08 für Europa.</description>
  <begin>5150 MHz</begin>
  <end>5895 MHz</end>
  <channels>
    <range label="U-NII-1" type="provider" selectable="1">
      <begin>5150 MHz</begin>
      <end>5250 MHz</end>
      <color>#3c8d40</color>
      <comment>Channels 36 to 48</comment>
      <channels start="5170 MHz" width="20 MHz" first="36" count="4" step="4"/>
    </range>
    <range label="U-NII-2A" type="provider" selectable="1">
      <begin>5250 MHz</begin>
      <end>5350 MHz</end>
      <color>#c9a227</color>
      <comment>Channels 52 to 64. Radar detection (DFS) required</comment>
      <channels start="5250 MHz" width="20 MHz" first="52" count="4" step="4"/>
    </range>
    <!-- Channel 144 ends 5 MHz above this sub-band, channel 169 begins 15 MHz below its own: the raster of the channels
         does not know the edges at 5725 and 5850 MHz. -->
    <range label="U-NII-2C" type="provider" selectable="1">
      <begin>5470 MHz</begin>
      <end>5725 MHz</end>
      <color>#c9a227</color>
      <comment>Channels 100 to 144, in Europe 100 to 140. Radar detection (DFS) required</comment>
      <channels start="5490 MHz" width="20 MHz" first="100" count="12" step="4"/>
    </range>
    <range label="U-NII-3" type="provider" selectable="1">
      <begin>5725 MHz</begin>
      <end>5850 MHz</end>
      <color>#3f7fbf</color>
      <comment>Channels 149 to 165</comment>
      <channels start="5735 MHz" width="20 MHz" first="149" count="5" step="4"/>
    </range>
    <range label="U-NII-4" type="provider" selectable="1">
      <begin>5850 MHz</begin>
      <end>5895 MHz</end>
      <color>#7a7a7a</color>
      <comment>Channels 169 to 177. United States</comment>
      <channels start="5835 MHz" width="20 MHz" first="169" count="3" step="4"/>
    </range>
  </channels>
</profile>
