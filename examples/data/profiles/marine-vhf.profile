<?xml version="1.0" encoding="UTF-8"?>
<profile id="marine-vhf" showInChannelList="1">
  <label lang="en">Marine VHF</label>
  <label lang="de">UKW-Seefunk</label>
  <description lang="en">Channels 1 to 28 and 60 to 88 of 25 kHz; on duplex channels coast stations transmit 4.6 MHz above ship stations. Source: ITU Radio Regulations Appendix 18.</description>
  <description lang="de">Kanäle 1 bis 28 und 60 bis 88 zu je 25 kHz; auf Duplexkanälen senden Küstenfunkstellen 4,6 MHz über den Schiffen. Quelle: ITU Radio Regulations Appendix 18 (Vollzugsordnung für den Funkdienst, Anhang 18).</description>
  <begin>156 MHz</begin>
  <end>162.05 MHz</end>
  <channels>
    <!-- The ship frequency of channel n is 156 MHz + n * 50 kHz up to 28, and 156.025 MHz + (n - 60) * 50 kHz from 60
         on, so the two rows interleave and each run leaves a gap of 25 kHz. -->
    <range label="Duplex 1-7, 60-66" type="direction" selectable="1">
      <begin>156.0125 MHz</begin>
      <end>156.3625 MHz</end>
      <color>#1c6ea4</color>
      <comment>Lower band: ship to coast, upper band: coast to ship. Channel 6 is simplex</comment>
      <channels start="156.0375 MHz" width="25 kHz" space="25 kHz" first="1" count="5"/>
      <channels start="156.3375 MHz" width="25 kHz" space="25 kHz" first="7" count="1"/>
      <channels start="156.0125 MHz" width="25 kHz" space="25 kHz" first="60" count="7"/>
      <mirror>4.6 MHz</mirror>
    </range>
    <range label="Duplex 18-28, 78-86" type="direction" selectable="1">
      <begin>156.8875 MHz</begin>
      <end>157.4125 MHz</end>
      <color>#1c6ea4</color>
      <comment>Lower band: ship to coast, upper band: coast to ship. Some may be used on one of their frequencies alone</comment>
      <channels start="156.8875 MHz" width="25 kHz" space="25 kHz" first="18" count="11"/>
      <channels start="156.9125 MHz" width="25 kHz" space="25 kHz" first="78" count="9"/>
      <mirror>4.6 MHz</mirror>
    </range>
    <range label="Simplex" type="provider" selectable="1">
      <begin>156.2875 MHz</begin>
      <end>157.4375 MHz</end>
      <color>#4db6ac</color>
      <channels start="156.2875 MHz" width="25 kHz" space="25 kHz" first="6" count="1"/>
      <channels start="156.3875 MHz" width="25 kHz" space="25 kHz" first="8" count="8"/>
      <channels start="156.8375 MHz" width="25 kHz" space="25 kHz" first="17" count="1"/>
      <channels start="156.3625 MHz" width="25 kHz" space="25 kHz" first="67" count="3"/>
      <channels start="156.5625 MHz" width="25 kHz" space="25 kHz" first="71" count="7"/>
      <channels start="157.3625 MHz" width="25 kHz" space="25 kHz" first="87" count="2"/>
      <range label="16" type="channel" selectable="1">
        <begin>156.7875 MHz</begin>
        <end>156.8125 MHz</end>
        <color>#dd2222</color>
        <comment>Distress, safety and calling</comment>
      </range>
      <range label="70" type="channel" selectable="1">
        <begin>156.5125 MHz</begin>
        <end>156.5375 MHz</end>
        <color>#dd7722</color>
        <comment>Digital selective calling, no voice</comment>
      </range>
    </range>
    <range label="AIS 1" type="channel" selectable="1">
      <begin>161.9625 MHz</begin>
      <end>161.9875 MHz</end>
      <color>#8d6e63</color>
      <comment>Automatic identification system</comment>
    </range>
    <range label="AIS 2" type="channel" selectable="1">
      <begin>162.0125 MHz</begin>
      <end>162.0375 MHz</end>
      <color>#8d6e63</color>
      <comment>Automatic identification system</comment>
    </range>
  </channels>
</profile>
