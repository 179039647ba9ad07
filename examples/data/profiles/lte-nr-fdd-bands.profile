<?xml version="1.0" encoding="UTF-8"?>
<profile id="lte-nr-fdd-bands" showInChannelList="1">
  <label lang="en">LTE and 5G NR bands with paired spectrum</label>
  <label lang="de">LTE- und 5G-NR-Bänder mit gepaartem Spektrum</label>
  <description lang="en">Operating bands 1, 3, 7, 8 and 28 (n1, n3, n7, n8 and n28) in blocks of 5 MHz, numbered upwards within each band. Source: 3GPP TS 36.101; 3GPP TS 38.101-1.</description>
  <description lang="de">Betriebsbänder 1, 3, 7, 8 und 28 (n1, n3, n7, n8 und n28) in Blöcken zu 5 MHz, in jedem Band aufwärts gezählt. Quelle: 3GPP TS 36.101; 3GPP TS 38.101-1.</description>
  <begin>703 MHz</begin>
  <end>2690 MHz</end>
  <channels>
    <!-- Each range is the uplink, its mirrored copy of the same label the downlink. -->
    <range label="Band 28" type="direction" selectable="1">
      <begin>703 MHz</begin>
      <end>748 MHz</end>
      <color>#1f9e89</color>
      <comment>Lower band: mobile to base, upper band: base to mobile; in Europe the lower 30 MHz of each are in use</comment>
      <channels start="703 MHz" width="5 MHz" first="1" count="9"/>
      <mirror>55 MHz</mirror>
    </range>
    <range label="Band 8" type="direction" selectable="1">
      <begin>880 MHz</begin>
      <end>915 MHz</end>
      <color>#d06020</color>
      <comment>Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="880 MHz" width="5 MHz" first="1" count="7"/>
      <mirror>45 MHz</mirror>
    </range>
    <range label="Band 3" type="direction" selectable="1">
      <begin>1710 MHz</begin>
      <end>1785 MHz</end>
      <color>#c04848</color>
      <comment>Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="1710 MHz" width="5 MHz" first="1" count="15"/>
      <mirror>95 MHz</mirror>
    </range>
    <range label="Band 1" type="direction" selectable="1">
      <begin>1920 MHz</begin>
      <end>1980 MHz</end>
      <color>#7a5fb0</color>
      <comment>Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="1920 MHz" width="5 MHz" first="1" count="12"/>
      <mirror>190 MHz</mirror>
    </range>
    <range label="Band 7" type="direction" selectable="1">
      <begin>2500 MHz</begin>
      <end>2570 MHz</end>
      <color>#3f7fbf</color>
      <comment>Lower band: mobile to base, upper band: base to mobile</comment>
      <channels start="2500 MHz" width="5 MHz" first="1" count="14"/>
      <mirror>120 MHz</mirror>
    </range>
  </channels>
</profile>
